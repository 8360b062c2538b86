<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>ActivityTexts</name>
    <message numerus="yes">
        <source>%1 gave %Ln message(s) (%2).</source>
        <translation>
            <numerusform>%1 gave %Ln message (%2).</numerusform>
            <numerusform>%1 gave %Ln messages (%2).</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 gave %Ln folder(s) (%2).</source>
        <translation>
            <numerusform>%1 gave %Ln folder (%2).</numerusform>
            <numerusform>%1 gave %Ln folders (%2).</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 gave a text of %Ln character(s) (%2).</source>
        <translation>
            <numerusform>%1 gave a text of %Ln character (%2).</numerusform>
            <numerusform>%1 gave a text of %Ln characters (%2).</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 gave %Ln message(s), %2 withheld (%3).</source>
        <translation>
            <numerusform>%1 gave %Ln message, %2 of them withheld (%3).</numerusform>
            <numerusform>%1 gave %Ln messages, %2 of them withheld (%3).</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CallTexts</name>
    <message numerus="yes">
        <source>%1: %Ln message(s), %2 withheld, %3</source>
        <translation>
            <numerusform>%1: %Ln message, %2 withheld, %3</numerusform>
            <numerusform>%1: %Ln messages, %2 withheld, %3</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1: %Ln message(s), %2</source>
        <translation>
            <numerusform>%1: %Ln message, %2</numerusform>
            <numerusform>%1: %Ln messages, %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1: %Ln folder(s), %2</source>
        <translation>
            <numerusform>%1: %Ln folder, %2</numerusform>
            <numerusform>%1: %Ln folders, %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1: %Ln character(s), %2</source>
        <translation>
            <numerusform>%1: %Ln character, %2</numerusform>
            <numerusform>%1: %Ln characters, %2</numerusform>
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
