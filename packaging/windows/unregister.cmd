@echo off
call "%~dp0register.cmd" /u %*
