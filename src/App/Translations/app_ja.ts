<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name>tarnwell::FormField</name>
    <message>
        <source>%1, invalid</source>
        <translation>%1（入力に誤りがあります）</translation>
    </message>
</context>
<context>
    <name>tarnwell::MainWindow</name>
    <message>
        <source>Pages</source>
        <translation>ページ</translation>
    </message>
</context>
<context>
    <name>tarnwell::Notice</name>
    <message>
        <source>Details</source>
        <translation>詳細</translation>
    </message>
</context>
<context>
    <name>tarnwell::StageRow</name>
    <message>
        <source>%1: not yet</source>
        <translation>%1: 未実行</translation>
    </message>
    <message>
        <source>%1: under way</source>
        <translation>%1: 実行中</translation>
    </message>
    <message>
        <source>%1: done</source>
        <translation>%1: 完了</translation>
    </message>
    <message>
        <source>%1: failed</source>
        <translation>%1: 失敗</translation>
    </message>
</context>
</TS>
