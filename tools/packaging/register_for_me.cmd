@echo off
rem Registers the library beside this file for the user who runs this; needs no rights.
rem /q: without waiting for a key. Ends with 0, or with 1 when something could not be written.
setlocal
set "folder=%~dp0"
set "folder=%folder:~0,-1%"
rem The library is one of 32 bits: its classes stand in that view of the registry, which the programs of 32 bits see.
set "registry=%SystemRoot%\System32\reg.exe"
if exist "%SystemRoot%\SysWOW64\reg.exe" set "registry=%SystemRoot%\SysWOW64\reg.exe"
set result=0
"%registry%" import "%folder%\registration\add.reg" >nul 2>&1
if errorlevel 1 set result=1
@PLACED@
if %result%==0 (echo qvObjects is registered for you.) else echo Not done: something could not be written.
if /i not "%~1"=="/q" pause
exit /b %result%

:write
"%registry%" add "HKCU\Software\Classes\%~1" /ve /d "%~2" /f >nul 2>&1
if errorlevel 1 set result=1
exit /b 0
