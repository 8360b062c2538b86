<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>tarnwell::SafetyTexts</name>
    <message numerus="yes">
        <source>An assistant may read at most %n message(s) a call.</source>
        <translation>
            <numerusform>An assistant may read at most %n message a call.</numerusform>
            <numerusform>An assistant may read at most %n messages a call.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>It gets at most %Ln character(s) of a text.</source>
        <translation>
            <numerusform>It gets at most %Ln character of a text.</numerusform>
            <numerusform>It gets at most %Ln characters of a text.</numerusform>
        </translation>
    </message>
</context>
</TS>
