@echo off
rem Removes what register_for_me wrote. /q: without waiting for a key. Ends with 0, or with 1 when something could not be removed.
setlocal
set "registry=%SystemRoot%\System32\reg.exe"
if exist "%SystemRoot%\SysWOW64\reg.exe" set "registry=%SystemRoot%\SysWOW64\reg.exe"
set result=0
@OFF@"%registry%" import "%~dp0registration\remove.reg" >nul 2>&1
if errorlevel 1 set result=1
if %result%==0 (echo qvObjects is no longer registered for you.) else echo Not done: something could not be removed.
if /i not "%~1"=="/q" pause
exit /b %result%
