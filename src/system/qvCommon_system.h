#pragma once

#include <string_view>

/// The members of qvCommon that wait for processes, end them, and look into libraries. What the system refuses is not told, but
/// for a wait that fails.
class qvCommon_system {
public:
    long WaitOnProgram(long idProg, bool WaitDead);
    long TerminateProgram(long& hProg);
    bool CheckLibFunction(std::wstring_view sLib, std::wstring_view sFkt);
};
