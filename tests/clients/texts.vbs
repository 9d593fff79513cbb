' The text members, called with what scripts have in hand.
Dim common
Set common = CreateObject("qvObjects.qvCommon")

Check "cutting, the blanks left", "Hell  World", common.StringCut("Hello  World", "O", -1)
Check "cutting what is not there", "Hello", common.StringCut("Hello", "x")
Check "cutting umlauts in any case", "GrßeX", common.StringCut("GrößeX", "Ö")

Check "trimming blanks and tabs", "a b", common.qvTrim(vbTab & " a b " & vbTab)
Check "trimming on the left", "x ", common.qvTrimL(vbTab & "x ")
Check "trimming on the right", " x", common.qvTrimR(" x" & vbTab)
Check "only blanks are not trimmed", "   ", common.qvTrim("   ")

Check "decimal comma", 1.5, common.StrToNum("1,5")
Check "decimal point", 1.5, common.StrToNum("1.5")
Check "only the first comma counts", 1.234, common.StrToNum("1.234,5")
Check "a number at the start", -12.0, common.StrToNum(" -12 Stück")
Check "an exponent", 1500.0, common.StrToNum("1,5E3")
Check "a hexadecimal number", 255.0, common.StrToNum("&HFF")
Check "no number", 0.0, common.StrToNum("none")

Check "wahr", True, common.StrToBOOL("WAHR")
Check "-1", True, common.StrToBOOL("-1")
Check "a Boolean as text", True, common.StrToBOOL(True)
Check "falsch", False, common.StrToBOOL("falsch")
Check "yes", False, common.StrToBOOL("yes")

' The script's own numbers follow the user's locale, and so does the test.
Check "the user's number", True, common.qvIsNumeric(CStr(1234.5))
Check "blanks around a number", True, common.qvIsNumeric(" 12 ")
Check "a number with a sign", True, common.qvIsNumeric("-12")
Check "no number is not numeric", False, common.qvIsNumeric("12a")
Check "an empty text is not numeric", False, common.qvIsNumeric("")

Done
