@echo off
rem Registers the library beside this file for all users of this computer; needs a console that was opened as administrator.
rem /q: without waiting for a key. Ends with 0, or with what regsvr32 ends with.
setlocal
set "system=%SystemRoot%\System32"
if exist "%SystemRoot%\SysWOW64\regsvr32.exe" set "system=%SystemRoot%\SysWOW64"
@OFF@"%system%\regsvr32.exe" /s @UNDO@"%~dp0qvObjects.dll"
set result=%errorlevel%
if %result%==0 (echo qvObjects is @DONE@ for everybody.) else echo Not done, regsvr32 says %result%. It needs the rights of an administrator.
if /i not "%~1"=="/q" pause
exit /b %result%
