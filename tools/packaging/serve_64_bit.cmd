@echo off
rem Switches @SWITCH@ that 64-bit programs can use the library, for those for whom it is registered. Where that is everybody, it
rem needs a console that was opened as administrator.
rem /q: without waiting for a key. Ends with 0, or with 1 when nothing or not all was done.
setlocal
rem A program of 32 bits that starts this sees another registry.
set "registry=%SystemRoot%\System32\reg.exe"
if exist "%SystemRoot%\Sysnative\reg.exe" set "registry=%SystemRoot%\Sysnative\reg.exe"
set "class=Software\Classes\Wow6432Node\CLSID\@CLASS@\InprocServer32"
set result=1
set found=
if not exist "%SystemRoot%\SysWOW64\reg.exe" (
    echo Not done: this Windows has no 64-bit programs.
    goto end
)
"%registry%" query "HKCU\%class%" >nul 2>&1
if not errorlevel 1 call :switch me "for you."
"%registry%" query "HKLM\%class%" >nul 2>&1
if not errorlevel 1 call :switch everybody "for everybody."
if "%found%"=="" echo Not done: qvObjects is not registered. Register it first.
:end
if /i not "%~1"=="/q" pause
exit /b %result%

:switch
if "%found%"=="" set result=0
set found=yes
"%registry%" import "%~dp0registration\64_bit_@SWITCH@_for_%~1.reg" >nul 2>&1
if errorlevel 1 (
    set result=1
    echo Not done %~2 That needs the rights of an administrator, in a console that was opened as such.
) else echo 64-bit programs @CAN@ use qvObjects now, %~2
exit /b 0
