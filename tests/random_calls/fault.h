#pragma once

/// Ends the program with this message, and with what was called last, if `holds` is false.
void require(bool holds, const char* message);
