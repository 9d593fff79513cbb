// The checks of the script tests. Each prints one line; done prints how many there were.
var checkCount = 0;

function report(passed, what, difference) {
    ++checkCount;
    WScript.Echo(passed ? "ok - " + what : "not ok - " + what + ": " + difference);
}

function check(what, expected, actual) {
    report(expected === actual, what,
        "expected " + typeof expected + " " + expected + ", got " + typeof actual + " " + actual);
}

// That the call fails with this number; the description is looked at when one is given.
function checkError(what, number, description, call) {
    try {
        call();
    } catch (error) {
        var actual = error.number & 0xFFFF;
        report(actual === number && (description === null || error.description === description), what,
            "expected " + number + " / " + description + ", got " + actual + " / " + error.description);
        return;
    }
    report(false, what, "no error");
}

// That the call fails: the numbers of wrong calls differ between the engines.
function checkFails(what, call) {
    try {
        call();
    } catch (error) {
        report(true, what, "");
        return;
    }
    report(false, what, "no error");
}

// The last statement of every script: a script that breaks off before it has failed.
function done() {
    WScript.Echo("1.." + checkCount);
}

