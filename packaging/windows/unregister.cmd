@echo off
rem A 32-bit server is registered by the 32-bit regsvr32, which a 64-bit Windows keeps in SysWOW64.
set tool=%SystemRoot%\System32\regsvr32.exe
if exist "%SystemRoot%\SysWOW64\regsvr32.exe" set tool=%SystemRoot%\SysWOW64\regsvr32.exe
"%tool%" /u %* "%~dp0QuillonMediaRW.dll"
