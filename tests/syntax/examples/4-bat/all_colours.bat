@echo off
rem Builds the project and copies the result.
setlocal
set OUT=build
if not exist %OUT% mkdir %OUT%
for %%f in (*.c) do cl /c %%f /Fo%OUT%\
if errorlevel 1 goto failed
copy %OUT%\app.exe dist\ > nul
echo Copied 1 file.
goto end
:failed
echo Build failed with %errorlevel%
:end
endlocal
