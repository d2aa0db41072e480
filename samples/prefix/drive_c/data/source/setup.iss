[Setup]
AppName=Clock
