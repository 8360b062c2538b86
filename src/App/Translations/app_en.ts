<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>ActivityTexts</name>
    <message numerus="yes">
        <source>%1 gave %n message(s) (%2 s).</source>
        <translation>
            <numerusform>%1 gave %n message (%2 s).</numerusform>
            <numerusform>%1 gave %n messages (%2 s).</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 gave %n folder(s) (%2 s).</source>
        <translation>
            <numerusform>%1 gave %n folder (%2 s).</numerusform>
            <numerusform>%1 gave %n folders (%2 s).</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 gave a text of %n character(s) (%2 s).</source>
        <translation>
            <numerusform>%1 gave a text of %n character (%2 s).</numerusform>
            <numerusform>%1 gave a text of %n characters (%2 s).</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 gave %n message(s), %2 withheld (%3 s).</source>
        <translation>
            <numerusform>%1 gave %n message, %2 of them withheld (%3 s).</numerusform>
            <numerusform>%1 gave %n messages, %2 of them withheld (%3 s).</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CallTexts</name>
    <message numerus="yes">
        <source>%1: %n message(s), %2 withheld, %3 s</source>
        <translation>
            <numerusform>%1: %n message, %2 withheld, %3 s</numerusform>
            <numerusform>%1: %n messages, %2 withheld, %3 s</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1: %n message(s), %2 s</source>
        <translation>
            <numerusform>%1: %n message, %2 s</numerusform>
            <numerusform>%1: %n messages, %2 s</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1: %n folder(s), %2 s</source>
        <translation>
            <numerusform>%1: %n folder, %2 s</numerusform>
            <numerusform>%1: %n folders, %2 s</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1: %n character(s), %2 s</source>
        <translation>
            <numerusform>%1: %n character, %2 s</numerusform>
            <numerusform>%1: %n characters, %2 s</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>tarnwell::AssistantsTexts</name>
    <message numerus="yes">
        <source>Tarnwell runs these %n command(s) of %1:</source>
        <translation>
            <numerusform>Tarnwell runs this command of %1:</numerusform>
            <numerusform>Tarnwell runs these %n commands of %1:</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>… %n line(s) that stay …</source>
        <translation>
            <numerusform>… %n line that stays …</numerusform>
            <numerusform>… %n lines that stay …</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Run the %n command(s)</source>
        <translation>
            <numerusform>Run the command</numerusform>
            <numerusform>Run the %n commands</numerusform>
        </translation>
    </message>
</context>
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
<context>
    <name>tarnwell::TryItTexts</name>
    <message numerus="yes">
        <source>%n message(s)</source>
        <translation>
            <numerusform>%n message</numerusform>
            <numerusform>%n messages</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n withheld</source>
        <translation>
            <numerusform>%n withheld</numerusform>
            <numerusform>%n withheld</numerusform>
        </translation>
    </message>
</context>
</TS>
