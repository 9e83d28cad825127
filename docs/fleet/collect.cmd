@echo off
rem Writes this notebook's readings for a text-file collector. Run it every five minutes as SYSTEM:
rem   schtasks /create /tn vexahealth /sc minute /mo 5 /ru SYSTEM /tr "\"C:\Program Files\Vexa\collect.cmd\" C:\textfile"
rem
rem   collect.cmd FOLDER      the folder that the collector reads
rem
rem The collector sees whole files only: it takes those that end in .prom, and the renaming is one step. A client that can't
rem write leaves the old file, whose age then tells. Without the library (3) it writes vexahealth_up 0.
"%~dp0vexahealth.exe" status --format prometheus > "%~1\vexahealth.new"
if %errorlevel% equ 3 goto keep
if %errorlevel% geq 2 exit /b %errorlevel%
:keep
move /y "%~1\vexahealth.new" "%~1\vexahealth.prom" > nul
