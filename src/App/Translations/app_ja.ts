<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja">
<context>
    <name>ActivityTexts</name>
    <message>
        <source>Time</source>
        <translation>時刻</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>種類</translation>
    </message>
    <message>
        <source>Subject</source>
        <translation>分野</translation>
    </message>
    <message>
        <source>What happened</source>
        <translation>内容</translation>
    </message>
    <message>
        <source>Detail</source>
        <translation>詳細</translation>
    </message>
    <message>
        <source>Info</source>
        <translation>情報</translation>
    </message>
    <message>
        <source>Notice</source>
        <translation>通知</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Assistant</source>
        <translation>アシスタント</translation>
    </message>
    <message>
        <source>Mail server</source>
        <translation>メールサーバー</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>パスワード</translation>
    </message>
    <message>
        <source>Call</source>
        <translation>呼び出し</translation>
    </message>
    <message>
        <source>Local endpoint</source>
        <translation>ローカル接続</translation>
    </message>
    <message>
        <source>Only the entries of this app are shown. No system journal runs on this computer, so the helpers of your assistants leave no record.</source>
        <translation>このアプリの記録だけを表示しています。このコンピューターではシステムジャーナルが動いていないため、アシスタントのヘルパーの記録は残りません。</translation>
    </message>
    <message>
        <source>Only the entries of this app are shown. You may not read the system journal, and it keeps none of your own.</source>
        <translation>このアプリの記録だけを表示しています。システムジャーナルを読む権限がなく、あなた専用のジャーナルもありません。</translation>
    </message>
    <message>
        <source>Only the entries of this app are shown. The system journal could not be read.</source>
        <translation>このアプリの記録だけを表示しています。システムジャーナルを読み取れませんでした。</translation>
    </message>
    <message>
        <source>Only the entries of this app are shown. An app cannot follow the log of this system.</source>
        <translation>このアプリの記録だけを表示しています。このシステムでは、アプリからシステムのログを追うことができません。</translation>
    </message>
    <message>
        <source>An administrator can make you a member of the group systemd-journal. Or they can keep the journal on disk, with the line &quot;Storage=persistent&quot; in /etc/systemd/journald.conf; then each user has a journal of their own.</source>
        <translation>管理者に、あなたをグループ systemd-journal に加えてもらってください。または /etc/systemd/journald.conf に「Storage=persistent」の行を書いてジャーナルをディスクに残すと、ユーザーごとのジャーナルができます。</translation>
    </message>
    <message>
        <source>The app Console shows it: search for the subsystem app.tarnwell.Tarnwell.</source>
        <translation>「コンソール」アプリでサブシステム app.tarnwell.Tarnwell を検索すると表示できます。</translation>
    </message>
    <message>
        <source>A helper starts for an assistant.</source>
        <translation>アシスタントのためにヘルパーを起動します。</translation>
    </message>
    <message>
        <source>The helper is ready.</source>
        <translation>ヘルパーの準備ができました。</translation>
    </message>
    <message>
        <source>An assistant connected (protocol %1).</source>
        <translation>アシスタントが接続しました（プロトコル %1）。</translation>
    </message>
    <message>
        <source>The assistant said goodbye.</source>
        <translation>アシスタントが接続を終えました。</translation>
    </message>
    <message>
        <source>The helper stopped.</source>
        <translation>ヘルパーが終了しました。</translation>
    </message>
    <message>
        <source>The assistant cancelled %1 before it began.</source>
        <translation>アシスタントが %1 を開始前に取り消しました。</translation>
    </message>
    <message>
        <source>A call was not run: its connection closed before it began.</source>
        <translation>始まる前に接続が閉じたため、呼び出しを実行しませんでした。</translation>
    </message>
    <message>
        <source>The safety settings allow %1.</source>
        <translation>安全設定により %1 は許可されています。</translation>
    </message>
    <message>
        <source>%1 is a preview: it will change nothing.</source>
        <translation>%1 はプレビューです。何も変更しません。</translation>
    </message>
    <message>
        <source>%1 is refused: read-only mode is on.</source>
        <translation>読み取り専用モードがオンのため、%1 を拒否します。</translation>
    </message>
    <message>
        <source>%1 is refused: it is off in the safety settings.</source>
        <translation>安全設定でオフになっているため、%1 を拒否します。</translation>
    </message>
    <message numerus="yes">
        <source>%1 gave %Ln message(s) (%2).</source>
        <translation>
            <numerusform>%1 は %Ln 通のメールを返しました（%2）。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 gave %Ln folder(s) (%2).</source>
        <translation>
            <numerusform>%1 は %Ln 個のフォルダーを返しました（%2）。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 gave a text of %Ln character(s) (%2).</source>
        <translation>
            <numerusform>%1 は %Ln 文字の本文を返しました（%2）。</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 withheld the text of the message (%2).</source>
        <translation>%1 はメールの本文を渡しませんでした（%2）。</translation>
    </message>
    <message>
        <source>%1 found no text in the message (%2).</source>
        <translation>%1 が調べたメールには本文がありませんでした（%2）。</translation>
    </message>
    <message>
        <source>%1 answered that an account is set up (%2).</source>
        <translation>%1 は、アカウントが設定済みだと答えました（%2）。</translation>
    </message>
    <message>
        <source>%1 answered that no account is set up (%2).</source>
        <translation>%1 は、アカウントが未設定だと答えました（%2）。</translation>
    </message>
    <message>
        <source>%1 changed the mailbox (%2).</source>
        <translation>%1 がメールボックスを変更しました（%2）。</translation>
    </message>
    <message>
        <source>%1 told what it would change, and changed nothing (%2).</source>
        <translation>%1 は変更の内容だけを伝え、何も変更しませんでした（%2）。</translation>
    </message>
    <message>
        <source>%1 was refused and changed nothing (%2).</source>
        <translation>%1 は拒否され、何も変更しませんでした（%2）。</translation>
    </message>
    <message>
        <source>%1 answered: %2 (%3).</source>
        <translation>%1 の答え: %2（%3）</translation>
    </message>
    <message>
        <source>%1 failed: %2</source>
        <translation>%1 に失敗しました: %2</translation>
    </message>
    <message>
        <source>%1 could not use the keyring: %2</source>
        <translation>%1 はキーリングを使えませんでした: %2</translation>
    </message>
    <message>
        <source>%1 failed by a fault of the helper: %2</source>
        <translation>%1 はヘルパーの不具合で失敗しました: %2</translation>
    </message>
    <message>
        <source>Signed in to the mail server as %1.</source>
        <translation>%1 としてメールサーバーにログインしました。</translation>
    </message>
    <message>
        <source>The settings file cannot be read. The default settings hold.</source>
        <translation>設定ファイルを読み取れません。初期設定で動作します。</translation>
    </message>
    <message>
        <source>The settings file is not trusted (%1). The default settings hold.</source>
        <translation>設定ファイルを信頼できません（%1）。初期設定で動作します。</translation>
    </message>
    <message>
        <source>The outcome of the connection test was not saved: %1</source>
        <translation>接続テストの結果を保存できませんでした: %1</translation>
    </message>
    <message>
        <source>The app password was not read: %1</source>
        <translation>アプリ用パスワードを読み取れませんでした: %1</translation>
    </message>
    <message>
        <source>The app password from before was not put back: %1</source>
        <translation>以前のアプリ用パスワードを元に戻せませんでした: %1</translation>
    </message>
    <message>
        <source>The app password of the account before was not removed: %1</source>
        <translation>以前のアカウントのアプリ用パスワードを削除できませんでした: %1</translation>
    </message>
    <message>
        <source>The local endpoint listens on %1.</source>
        <translation>ローカル接続が %1 で待ち受けています。</translation>
    </message>
    <message>
        <source>The local endpoint failed: %1</source>
        <translation>ローカル接続でエラーが起きました: %1</translation>
    </message>
    <message>
        <source>The local endpoint stopped.</source>
        <translation>ローカル接続を停止しました。</translation>
    </message>
    <message numerus="yes">
        <source>%1 gave %Ln message(s), %2 withheld (%3).</source>
        <translation>
            <numerusform>%1 は %Ln 通のメールを返しました。うち %2 通は渡していません（%3）。</numerusform>
        </translation>
    </message>
    <message>
        <source>%1, since %2</source>
        <translation>%1（%2 から）</translation>
    </message>
    <message>
        <source>This app</source>
        <translation>このアプリ</translation>
    </message>
    <message>
        <source>Helper %1, since %2</source>
        <translation>ヘルパー %1（%2 から）</translation>
    </message>
    <message>
        <source>Program %1, since %2</source>
        <translation>プログラム %1（%2 から）</translation>
    </message>
    <message>
        <source>%1 was cancelled (%2).</source>
        <translation>%1 は取り消されました（%2）。</translation>
    </message>
    <message>
        <source>%1 (process %2), since %3</source>
        <translation>%1（プロセス %2、%3 から）</translation>
    </message>
    <message>
        <source>You try %1.</source>
        <translation>お試しで %1 を呼び出します。</translation>
    </message>
    <message>
        <source>%1 is called.</source>
        <translation>%1 が呼び出されました。</translation>
    </message>
</context>
<context>
    <name>CallTexts</name>
    <message>
        <source>There is no tool with the name %1</source>
        <translation>%1 というツールはありません</translation>
    </message>
    <message>
        <source>%1 broken off: the helper ended</source>
        <translation>ヘルパーが終了したため、%1が中断されました</translation>
    </message>
    <message>
        <source>Giving the status…</source>
        <translation>状態を伝えています…</translation>
    </message>
    <message>
        <source>Listing the folders…</source>
        <translation>フォルダーを一覧にしています…</translation>
    </message>
    <message>
        <source>Searching the inbox…</source>
        <translation>受信トレイを検索しています…</translation>
    </message>
    <message>
        <source>Reading the summary of a message…</source>
        <translation>メールの要約を読んでいます…</translation>
    </message>
    <message>
        <source>Reading a message…</source>
        <translation>メールを読んでいます…</translation>
    </message>
    <message>
        <source>Looking for what could be cleaned up…</source>
        <translation>整理できるメールを探しています…</translation>
    </message>
    <message>
        <source>Moving a message…</source>
        <translation>メールを移動しています…</translation>
    </message>
    <message>
        <source>Marking a message as read…</source>
        <translation>メールを既読にしています…</translation>
    </message>
    <message>
        <source>Putting a message into the trash…</source>
        <translation>メールをゴミ箱に入れています…</translation>
    </message>
    <message>
        <source>Calling %1…</source>
        <translation>%1 を呼び出しています…</translation>
    </message>
    <message>
        <source>Gave the status</source>
        <translation>状態を伝えました</translation>
    </message>
    <message>
        <source>Listed the folders</source>
        <translation>フォルダーを一覧にしました</translation>
    </message>
    <message>
        <source>Searched the inbox</source>
        <translation>受信トレイを検索しました</translation>
    </message>
    <message>
        <source>Read the summary of a message</source>
        <translation>メールの要約を読みました</translation>
    </message>
    <message>
        <source>Read a message</source>
        <translation>メールを読みました</translation>
    </message>
    <message>
        <source>Proposed what could be cleaned up</source>
        <translation>整理できるメールを提案しました</translation>
    </message>
    <message>
        <source>Moved a message</source>
        <translation>メールを移動しました</translation>
    </message>
    <message>
        <source>Marked a message as read</source>
        <translation>メールを既読にしました</translation>
    </message>
    <message>
        <source>Put a message into the trash</source>
        <translation>メールをゴミ箱に入れました</translation>
    </message>
    <message>
        <source>Called %1</source>
        <translation>%1 を呼び出しました</translation>
    </message>
    <message>
        <source>Previewed a move</source>
        <translation>移動をプレビューしました</translation>
    </message>
    <message>
        <source>Previewed marking a message as read</source>
        <translation>既読にする操作をプレビューしました</translation>
    </message>
    <message>
        <source>Previewed putting a message into the trash</source>
        <translation>ゴミ箱への移動をプレビューしました</translation>
    </message>
    <message>
        <source>Previewed %1</source>
        <translation>%1 をプレビューしました</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>状態の確認</translation>
    </message>
    <message>
        <source>List of the folders</source>
        <translation>フォルダー一覧の取得</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>検索</translation>
    </message>
    <message>
        <source>Summary of a message</source>
        <translation>要約の読み取り</translation>
    </message>
    <message>
        <source>Reading</source>
        <translation>メールの読み取り</translation>
    </message>
    <message>
        <source>Clean-up proposal</source>
        <translation>整理の提案</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>移動</translation>
    </message>
    <message>
        <source>Marking as read</source>
        <translation>既読にする操作</translation>
    </message>
    <message>
        <source>Move into the trash</source>
        <translation>ゴミ箱への移動</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1（%2）</translation>
    </message>
    <message numerus="yes">
        <source>%1: %Ln message(s), %2 withheld, %3</source>
        <translation>
            <numerusform>%1: %Ln 通、うち %2 通は渡していません、%3</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1: %Ln message(s), %2</source>
        <translation>
            <numerusform>%1: %Ln 通、%2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1: %Ln folder(s), %2</source>
        <translation>
            <numerusform>%1: %Ln 個、%2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1: %Ln character(s), %2</source>
        <translation>
            <numerusform>%1: %Ln 文字、%2</numerusform>
        </translation>
    </message>
    <message>
        <source>%1: withheld, %2</source>
        <translation>%1: 渡していません、%2</translation>
    </message>
    <message>
        <source>%1: it has no text, %2</source>
        <translation>%1: 本文なし、%2</translation>
    </message>
    <message>
        <source>%1: an account is set up, %2</source>
        <translation>%1: アカウントは設定済み、%2</translation>
    </message>
    <message>
        <source>%1: no account is set up, %2</source>
        <translation>%1: アカウントは未設定、%2</translation>
    </message>
    <message>
        <source>%1 cancelled, %2</source>
        <translation>%1が取り消されました（%2）</translation>
    </message>
    <message>
        <source>%1 cancelled before it began</source>
        <translation>%1は開始前に取り消されました</translation>
    </message>
    <message>
        <source>%1 failed: %2</source>
        <translation>%1に失敗しました: %2</translation>
    </message>
    <message>
        <source>%1 failed, the keyring could not be used: %2</source>
        <translation>キーリングを使えず、%1に失敗しました: %2</translation>
    </message>
    <message>
        <source>%1 failed by a fault of the helper: %2</source>
        <translation>ヘルパーの不具合で%1に失敗しました: %2</translation>
    </message>
    <message>
        <source>%1: %2, %3</source>
        <translation>%1: %2、%3</translation>
    </message>
    <message>
        <source>%1 refused: read-only mode is on</source>
        <translation>%1を拒否しました: 読み取り専用モードがオンです</translation>
    </message>
    <message>
        <source>%1 refused: not allowed in the safety settings</source>
        <translation>%1を拒否しました: 安全設定で許可されていません</translation>
    </message>
    <message>
        <source>%1 refused</source>
        <translation>%1を拒否しました</translation>
    </message>
    <message>
        <source>under %1 s</source>
        <translation>%1 秒未満</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 秒</translation>
    </message>
    <message>
        <source>Try it: %1</source>
        <translation>お試し: %1</translation>
    </message>
    <message>
        <source>%1: no outcome in the log</source>
        <translation>%1: 結果の記録がありません</translation>
    </message>
</context>
<context>
    <name>tarnwell::AboutPage</name>
    <message>
        <source>The settings could not be saved. The page shows what holds.</source>
        <translation>設定を保存できませんでした。画面には現在有効な設定を表示しています。</translation>
    </message>
    <message>
        <source>The diagnostics are on the clipboard. They hold no address, no server and no password.</source>
        <translation>診断情報をクリップボードにコピーしました。メールアドレス、サーバー名、パスワードは含まれていません。</translation>
    </message>
    <message>
        <source>About</source>
        <translation>このアプリについて</translation>
    </message>
    <message>
        <source>An assistant works with your mail, and you decide how far.</source>
        <translation>アシスタントにメールの作業を任せる範囲は、あなたが決めます。</translation>
    </message>
    <message>
        <source>Tarnwell %1 lets an AI assistant work with one mailbox. Assistants reach it by the &lt;a href=&quot;%2&quot;&gt;Model Context Protocol&lt;/a&gt;. It is free software under the &lt;a href=&quot;%3&quot;&gt;MIT licence&lt;/a&gt;.</source>
        <translation>Tarnwell %1 は、AI アシスタントが 1 つのメールボックスを扱えるようにします。アシスタントとは &lt;a href=&quot;%2&quot;&gt;Model Context Protocol&lt;/a&gt; でつながります。&lt;a href=&quot;%3&quot;&gt;MIT ライセンス&lt;/a&gt;の自由ソフトウェアです。</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>言語</translation>
    </message>
    <message>
        <source>&amp;Language of this window</source>
        <translation>このウィンドウの言語(&amp;L)</translation>
    </message>
    <message>
        <source>That of the system (%1)</source>
        <translation>システムの言語（%1）</translation>
    </message>
    <message>
        <source>Where things are</source>
        <translation>保存場所</translation>
    </message>
    <message>
        <source>The &amp;settings</source>
        <translation>設定(&amp;S)</translation>
    </message>
    <message>
        <source>The helper reads this file afresh for every call.</source>
        <translation>ヘルパーは呼び出しのたびにこのファイルを読み直します。</translation>
    </message>
    <message>
        <source>The &amp;password</source>
        <translation>パスワード(&amp;P)</translation>
    </message>
    <message>
        <source>It lies in the keyring of your desktop, under this name and your address.</source>
        <translation>デスクトップのキーリングに、この名前とメールアドレスで保存されています。</translation>
    </message>
    <message>
        <source>The l&amp;og</source>
        <translation>ログ(&amp;O)</translation>
    </message>
    <message>
        <source>This command shows it in a terminal. The page “Activity” shows the same.</source>
        <translation>端末でこのコマンドを実行すると表示されます。「動作記録」のページでも同じ内容を確認できます。</translation>
    </message>
    <message>
        <source>Licence</source>
        <translation>ライセンス</translation>
    </message>
    <message>
        <source>&amp;Copy diagnostics</source>
        <translation>診断情報をコピー(&amp;C)</translation>
    </message>
</context>
<context>
    <name>tarnwell::AccountPage</name>
    <message>
        <source>Stored in the keyring. Type to replace it.</source>
        <translation>キーリングに保存済みです。入力すると置き換わります。</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>キャンセル(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Test connection</source>
        <translation>接続テスト(&amp;T)</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>アカウント</translation>
    </message>
    <message>
        <source>The mailbox that your assistant may look into. The password goes into your keyring and nowhere else.</source>
        <translation>アシスタントが参照できるメールボックスです。パスワードはキーリングにのみ保存されます。</translation>
    </message>
    <message>
        <source>Welcome</source>
        <translation>ようこそ</translation>
    </message>
    <message>
        <source>&amp;E-mail address</source>
        <translation>メールアドレス(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;Mail server</source>
        <translation>メールサーバー(&amp;M)</translation>
    </message>
    <message>
        <source>P&amp;ort</source>
        <translation>ポート(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Remove account</source>
        <translation>アカウントを削除(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>保存(&amp;S)</translation>
    </message>
</context>
<context>
    <name>tarnwell::AccountTexts</name>
    <message>
        <source>%1 needs an app password, not your ordinary one.</source>
        <translation>%1 では、通常のパスワードではなくアプリ用パスワードが必要です。</translation>
    </message>
    <message>
        <source>%1 needs an app password, and makes one only after two-step verification is on.</source>
        <translation>%1 ではアプリ用パスワードが必要です。2 段階認証を有効にすると作成できます。</translation>
    </message>
    <message>
        <source>%1 takes your ordinary password, or an app password if two-step verification is on.</source>
        <translation>%1 では通常のパスワードを使います。2 段階認証が有効な場合はアプリ用パスワードを使います。</translation>
    </message>
    <message>
        <source>%1 has a password for mail programs alone. It is not your ordinary one.</source>
        <translation>%1 にはメールソフト専用のパスワードがあります。通常のパスワードとは異なります。</translation>
    </message>
    <message>
        <source>%1 takes the password of your mailbox.</source>
        <translation>%1 ではメールボックスのパスワードを使います。</translation>
    </message>
    <message>
        <source>Where to find it</source>
        <translation>確認方法</translation>
    </message>
    <message>
        <source>How to make one</source>
        <translation>作成方法</translation>
    </message>
    <message>
        <source>An e-mail address looks like name@example.org.</source>
        <translation>メールアドレスは name@example.org のような形式です。</translation>
    </message>
    <message>
        <source>%1 lets mail programs sign in only through the browser, not with a password. Tarnwell cannot use this mailbox.</source>
        <translation>%1 ではメールソフトからのパスワードによるログインができず、ブラウザーでの認証が必要です。Tarnwell ではこのメールボックスを利用できません。</translation>
    </message>
    <message>
        <source>The name of a server looks like imap.example.org.</source>
        <translation>サーバー名は imap.example.org のような形式です。</translation>
    </message>
    <message>
        <source>A port is a number from 1 to 65535; mail servers mostly use 993.</source>
        <translation>ポートは 1 から 65535 までの数字です。メールサーバーではたいてい 993 です。</translation>
    </message>
    <message>
        <source>%1 gave you another name for mail programs. Type that name instead of the address.</source>
        <translation>%1 ではメールソフト用に別のログイン名が割り当てられています。アドレスの代わりにその名前を入力してください。</translation>
    </message>
    <message>
        <source>%1 wants only the part before the “@” as the name. Type just that.</source>
        <translation>%1 のログイン名は「@」より前の部分だけです。その部分だけを入力してください。</translation>
    </message>
    <message>
        <source>This is a name without “@”. Most providers want the whole address.</source>
        <translation>「@」のない名前です。ほとんどのプロバイダーではメールアドレス全体が必要です。</translation>
    </message>
    <message>
        <source>Server and port of well-known providers are filled in.</source>
        <translation>主なプロバイダーのサーバーとポートは自動で入力されます。</translation>
    </message>
    <message>
        <source>This provider is not known here. Its help pages name its IMAP server.</source>
        <translation>登録されていないプロバイダーです。IMAP サーバー名はプロバイダーのヘルプで確認してください。</translation>
    </message>
    <message>
        <source>Mail &amp;password</source>
        <translation>メールパスワード(&amp;P)</translation>
    </message>
    <message>
        <source>App &amp;password</source>
        <translation>アプリ用パスワード(&amp;P)</translation>
    </message>
    <message>
        <source>First allow mail programs (IMAP) in the settings of %1.</source>
        <translation>先に %1 の設定でメールソフト（IMAP）の利用を許可してください。</translation>
    </message>
    <message>
        <source>It goes into your keyring and nowhere else.</source>
        <translation>パスワードはキーリングにのみ保存されます。</translation>
    </message>
    <message>
        <source>No program keeps passwords in this session. Turn on KWallet in the system settings, or install the package gnome-keyring. Then log out and in again.</source>
        <translation>このセッションにはパスワードを保管するプログラムがありません。システム設定で KWallet を有効にするか、gnome-keyring パッケージをインストールしてから、ログインし直してください。</translation>
    </message>
    <message>
        <source>No program keeps passwords in this session. Install the package gnome-keyring, then log out and in again.</source>
        <translation>このセッションにはパスワードを保管するプログラムがありません。gnome-keyring パッケージをインストールしてから、ログインし直してください。</translation>
    </message>
    <message>
        <source>The server does not accept this name and password. Many providers want an app password instead of the ordinary one.</source>
        <translation>サーバーがこの名前とパスワードを受け付けません。多くのプロバイダーでは、通常のパスワードではなくアプリ用パスワードが必要です。</translation>
    </message>
    <message>
        <source>%1 does not accept this name and password. Its name for signing in is not the address; see the hints at the fields.</source>
        <translation>%1 がこの名前とパスワードを受け付けません。ログイン名はメールアドレスとは異なります。入力欄の説明を確認してください。</translation>
    </message>
    <message>
        <source>%1 does not accept this address and password. See the hint at the password.</source>
        <translation>%1 がこのアドレスとパスワードを受け付けません。パスワード欄の説明を確認してください。</translation>
    </message>
    <message>
        <source>Tarnwell lets an assistant look into one mailbox of yours, through this computer.</source>
        <translation>Tarnwell は、このコンピューターを通じて、アシスタントがメールボックスを 1 つ参照できるようにします。</translation>
    </message>
    <message>
        <source>At first it may only read, and mail with codes and account links stays closed to it.</source>
        <translation>初期設定では読み取りだけが許可され、認証コードやアカウントのリンクを含むメールは渡しません。</translation>
    </message>
    <message>
        <source>Type your account here, test the connection, save it: then connect your assistant.</source>
        <translation>アカウントを入力し、接続をテストして保存したら、アシスタントを接続してください。</translation>
    </message>
    <message>
        <source>Server found</source>
        <translation>サーバーの検索</translation>
    </message>
    <message>
        <source>Secure connection</source>
        <translation>安全な接続</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>ログイン</translation>
    </message>
    <message>
        <source>Inbox</source>
        <translation>受信トレイ</translation>
    </message>
    <message>
        <source>Begin with your e-mail address.</source>
        <translation>まずメールアドレスを入力してください。</translation>
    </message>
    <message>
        <source>The e-mail address is not complete yet.</source>
        <translation>メールアドレスの入力が完了していません。</translation>
    </message>
    <message>
        <source>The name of the mail server is missing.</source>
        <translation>メールサーバー名が入力されていません。</translation>
    </message>
    <message>
        <source>The name of the mail server is not right yet.</source>
        <translation>メールサーバー名に誤りがあります。</translation>
    </message>
    <message>
        <source>The port is not right yet.</source>
        <translation>ポートに誤りがあります。</translation>
    </message>
    <message>
        <source>The password is missing.</source>
        <translation>パスワードが入力されていません。</translation>
    </message>
    <message>
        <source>The connection works.</source>
        <translation>接続できました。</translation>
    </message>
    <message>
        <source>The test was stopped.</source>
        <translation>テストをキャンセルしました。</translation>
    </message>
    <message>
        <source>The mail server was not found. Check its name for typing errors, and that this computer is online.</source>
        <translation>メールサーバーが見つかりません。サーバー名の入力間違いと、インターネット接続を確認してください。</translation>
    </message>
    <message>
        <source>The mail server does not answer at this port. Check the port; mostly it is 993.</source>
        <translation>メールサーバーがこのポートで応答しません。ポートを確認してください。たいていは 993 です。</translation>
    </message>
    <message>
        <source>The server cannot prove that it is the one you named, so nothing was sent. Check the name of the server.</source>
        <translation>入力されたサーバーであることを確認できないため、何も送信しませんでした。サーバー名を確認してください。</translation>
    </message>
    <message>
        <source>There is no secure connection at this port, so nothing was sent. Check the port; mostly it is 993.</source>
        <translation>このポートでは安全な接続ができないため、何も送信しませんでした。ポートを確認してください。たいていは 993 です。</translation>
    </message>
    <message>
        <source>Something answers, but no IMAP server. Check server and port.</source>
        <translation>応答はありましたが、IMAP サーバーではありません。サーバー名とポートを確認してください。</translation>
    </message>
    <message>
        <source>You are signed in, but the server does not open an inbox. Ask your provider about IMAP.</source>
        <translation>ログインできましたが、受信トレイを開けません。プロバイダーに IMAP の利用について問い合わせてください。</translation>
    </message>
    <message>
        <source>The server took too long to answer. Check server and port, or try again later.</source>
        <translation>サーバーから時間内に応答がありませんでした。サーバー名とポートを確認するか、後でもう一度お試しください。</translation>
    </message>
    <message>
        <source>The server closed the connection. Try again in a few minutes.</source>
        <translation>サーバーが接続を切断しました。数分後にもう一度お試しください。</translation>
    </message>
    <message>
        <source>The test could not be made. The details say why.</source>
        <translation>テストを実行できませんでした。理由は「詳細」にあります。</translation>
    </message>
    <message>
        <source>No password is stored for this account. Type it and test again.</source>
        <translation>このアカウントのパスワードは保存されていません。入力してもう一度テストしてください。</translation>
    </message>
    <message>
        <source>The account is saved.</source>
        <translation>アカウントを保存しました。</translation>
    </message>
    <message>
        <source>The settings could not be saved. Nothing was changed; the details say why.</source>
        <translation>設定を保存できませんでした。何も変更されていません。理由は「詳細」にあります。</translation>
    </message>
    <message>
        <source>The account is removed.</source>
        <translation>アカウントを削除しました。</translation>
    </message>
    <message>
        <source>The account could not be removed. The details say why.</source>
        <translation>アカウントを削除できませんでした。理由は「詳細」にあります。</translation>
    </message>
    <message>
        <source>The keyring is locked. Unlock it and try again.</source>
        <translation>キーリングがロックされています。ロックを解除してもう一度お試しください。</translation>
    </message>
    <message>
        <source>The keyring refused this. Look into it with its own program, or try again.</source>
        <translation>キーリングに拒否されました。キーリングの管理プログラムで確認するか、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The keyring is unlocked.</source>
        <translation>キーリングのロックを解除しました。</translation>
    </message>
    <message>
        <source>The keyring stays locked, because its question was closed.</source>
        <translation>確認の画面が閉じられたため、キーリングはロックされたままです。</translation>
    </message>
    <message>
        <source>The keyring could not be unlocked. Log out and in again, then try once more.</source>
        <translation>キーリングのロックを解除できませんでした。ログインし直してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The keyring is locked. No password can be stored, and an assistant cannot reach your mail.</source>
        <translation>キーリングがロックされています。パスワードを保存できず、アシスタントもメールを参照できません。</translation>
    </message>
    <message>
        <source>You have no keyring yet. Make one, and choose a password for it.</source>
        <translation>キーリングがまだありません。作成して、そのパスワードを決めてください。</translation>
    </message>
    <message>
        <source>&amp;Unlock</source>
        <translation>ロックを解除(&amp;U)</translation>
    </message>
    <message>
        <source>Make a &amp;keyring</source>
        <translation>キーリングを作成(&amp;K)</translation>
    </message>
    <message>
        <source>The settings file is damaged. When you save, a copy is kept beside it, and the settings begin with the safe values.</source>
        <translation>設定ファイルが壊れています。保存すると、同じ場所にコピーを残したうえで、安全な初期設定から始めます。</translation>
    </message>
    <message>
        <source>Somebody else may have written the settings file, so it does not count and nothing can be saved. Remove it, or make it your own: %1</source>
        <translation>設定ファイルがほかのユーザーに書き換えられた可能性があるため、ファイルは使われず、保存もできません。ファイルを削除するか、所有者と権限を直してください: %1</translation>
    </message>
    <message>
        <source>Remove the account?</source>
        <translation>アカウントを削除しますか？</translation>
    </message>
    <message>
        <source>Tarnwell forgets the account and removes its password from the keyring. What an assistant may do goes back to the safe values. Your mail stays as it is.</source>
        <translation>アカウントの設定と、キーリングに保存されたパスワードを削除します。アシスタントに許可した操作は安全な初期設定に戻ります。メールはそのまま残ります。</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>削除する</translation>
    </message>
    <message>
        <source>Keep</source>
        <translation>削除しない</translation>
    </message>
</context>
<context>
    <name>tarnwell::ActivityPage</name>
    <message>
        <source>Activity</source>
        <translation>動作記録</translation>
    </message>
    <message>
        <source>Search the entries</source>
        <translation>記録を検索</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>検索</translation>
    </message>
    <message>
        <source>&amp;Follow</source>
        <translation>追従(&amp;F)</translation>
    </message>
    <message>
        <source>Follow</source>
        <translation>追従</translation>
    </message>
    <message>
        <source>Stays at the newest entry.</source>
        <translation>常に最新の記録を表示します。</translation>
    </message>
    <message>
        <source>Entries</source>
        <translation>記録の一覧</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>クリア(&amp;L)</translation>
    </message>
    <message>
        <source>Hides all entries so far. The logs themselves stay as they are.</source>
        <translation>これまでの記録を画面から消します。ログそのものは残ります。</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>コピー(&amp;C)</translation>
    </message>
    <message>
        <source>Copies the selected entries, or all when none is selected.</source>
        <translation>選択した記録をコピーします。選択がなければすべてコピーします。</translation>
    </message>
    <message>
        <source>&amp;Save to a file…</source>
        <translation>ファイルに保存(&amp;S)…</translation>
    </message>
    <message>
        <source>Saves all entries that are shown.</source>
        <translation>表示している記録をすべて保存します。</translation>
    </message>
    <message>
        <source>Saved to %1.</source>
        <translation>%1 に保存しました。</translation>
    </message>
    <message>
        <source>The entries could not be saved to %1.</source>
        <translation>%1 に記録を保存できませんでした。</translation>
    </message>
    <message>
        <source>No entry has this text.</source>
        <translation>一致する記録はありません。</translation>
    </message>
    <message>
        <source>Save the entries</source>
        <translation>記録を保存</translation>
    </message>
    <message>
        <source>What this app and the helpers of your assistants did. It holds no mail and no password.</source>
        <translation>このアプリと、アシスタントのヘルパーの動作記録です。メールの内容やパスワードは書き込みません。</translation>
    </message>
    <message>
        <source>Process</source>
        <translation>プロセス</translation>
    </message>
    <message>
        <source>Shows only what one process did: this app, or one helper of an assistant.</source>
        <translation>1 つのプロセス（このアプリ、またはアシスタントのヘルパーの 1 つ）がしたことだけを表示します。</translation>
    </message>
    <message>
        <source>&amp;Every line of the log</source>
        <translation>ログの全行(&amp;E)</translation>
    </message>
    <message>
        <source>Every line of the log</source>
        <translation>ログの全行</translation>
    </message>
    <message>
        <source>Shows each line as it was logged, instead of one for each call.</source>
        <translation>呼び出しごとに 1 行ではなく、ログの行をすべて表示します。</translation>
    </message>
    <message>
        <source>Everything</source>
        <translation>すべて</translation>
    </message>
    <message>
        <source>The chosen entry</source>
        <translation>選んだ記録</translation>
    </message>
    <message>
        <source>No entry of this process is shown.</source>
        <translation>このプロセスの記録は表示されていません。</translation>
    </message>
    <message>
        <source>No entry is shown.</source>
        <translation>表示する記録はありません。</translation>
    </message>
</context>
<context>
    <name>tarnwell::AssistantsPage</name>
    <message>
        <source>No account is saved yet. You can connect an assistant already, but it gets an error until you save one on the page “Account”.</source>
        <translation>アカウントがまだ保存されていません。アシスタントの接続はできますが、「アカウント」のページで保存するまではエラーになります。</translation>
    </message>
    <message>
        <source>Looking for assistants…</source>
        <translation>アシスタントを探しています…</translation>
    </message>
    <message>
        <source>None of the assistants that Tarnwell knows was found on this computer.</source>
        <translation>Tarnwell が対応しているアシスタントは、このコンピューターでは見つかりませんでした。</translation>
    </message>
    <message>
        <source>Assistants</source>
        <translation>アシスタント</translation>
    </message>
    <message>
        <source>Connect the assistants on this computer to Tarnwell. Every change is shown to you before it is made, and can be undone.</source>
        <translation>このコンピューターのアシスタントを Tarnwell に接続します。変更の内容は必ず事前に表示され、後から元に戻すこともできます。</translation>
    </message>
    <message>
        <source>On this computer</source>
        <translation>このコンピューター</translation>
    </message>
    <message>
        <source>Another assistant</source>
        <translation>ほかのアシスタント</translation>
    </message>
    <message>
        <source>Any other assistant that knows the Model Context Protocol can use Tarnwell. Copy this entry into its settings, beside what is there, and restart it.</source>
        <translation>Model Context Protocol に対応したアシスタントなら、ほかのものでも Tarnwell を使えます。この項目をコピーして、既存の内容を残したままアシスタントの設定に追加し、再起動してください。</translation>
    </message>
    <message>
        <source>&amp;Format of the settings</source>
        <translation>設定の形式(&amp;F)</translation>
    </message>
    <message>
        <source>Entry for another assistant</source>
        <translation>ほかのアシスタント用の項目</translation>
    </message>
    <message>
        <source>Not found here: %1</source>
        <translation>見つからなかったもの: %1</translation>
    </message>
</context>
<context>
    <name>tarnwell::AssistantsTexts</name>
    <message>
        <source>The file as it was: %1</source>
        <translation>変更前のファイル: %1</translation>
    </message>
    <message>
        <source>The settings of %1 cannot be read as JSON, so they stay as they are. Mend the file and try again.</source>
        <translation>%1 の設定を JSON として読み取れないため、変更していません。ファイルを直してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The settings of %1 cannot be read as JSON: see line %2, column %3. They stay as they are. Mend the file and try again.</source>
        <translation>%1 の設定を JSON として読み取れません（%2 行目、%3 文字目）。設定は変更していません。ファイルを直してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The settings of %1 hold something else where its servers belong, so they stay as they are. Mend the file and try again.</source>
        <translation>%1 の設定では、サーバーを書く場所に別のものがあるため、変更していません。ファイルを直してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The settings of %1 have the same entry twice, so they stay as they are. Remove one of the two and try again.</source>
        <translation>%1 の設定に同じ項目が 2 つあるため、変更していません。どちらかを削除してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The settings of %1 are no UTF-8 text, so they stay as they are. Save the file as UTF-8 and try again.</source>
        <translation>%1 の設定が UTF-8 のテキストではないため、変更していません。UTF-8 で保存し直してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The settings of %1 are too large for this, so they stay as they are. Add the entry by hand, from “Another assistant” below.</source>
        <translation>%1 の設定が大きすぎるため、変更していません。下の「ほかのアシスタント」の項目を手動で追加してください。</translation>
    </message>
    <message>
        <source>The settings file of %1 could not be written and is as it was. The details say why; mend that and try again.</source>
        <translation>%1 の設定ファイルに書き込めませんでした。ファイルは元のままです。理由は「詳細」にあります。原因を取り除いてから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The program “tarnwell” is not beside this app. Install Tarnwell again and try again.</source>
        <translation>このアプリと同じ場所にプログラム「tarnwell」がありません。Tarnwell をインストールし直してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Tarnwell lies in a folder whose name is no UTF-8 text, and settings can hold only that. Install it elsewhere and try again.</source>
        <translation>Tarnwell のフォルダー名が UTF-8 のテキストではないため、設定に書き込めません。別の場所にインストールしてから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The command of %1 cannot be started. Install %1 again, or wait until its update is done, and try again.</source>
        <translation>%1 のコマンドを開始できません。%1 をインストールし直すか、更新が終わるのを待ってから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The command of %1 took too long and was stopped. Try again.</source>
        <translation>%1 のコマンドに時間がかかりすぎたため、中止しました。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Start a new session of %1 to see it.</source>
        <translation>%1 の新しいセッションから使えます。</translation>
    </message>
    <message>
        <source>Restart Visual Studio Code to see it in %1.</source>
        <translation>Visual Studio Code を再起動すると、%1 に反映されます。</translation>
    </message>
    <message>
        <source>Start %1 to see it.</source>
        <translation>%1 を起動すると反映されます。</translation>
    </message>
    <message>
        <source>Restart %1 to see it.</source>
        <translation>%1 を再起動すると反映されます。</translation>
    </message>
    <message>
        <source>Connected.</source>
        <translation>接続済みです。</translation>
    </message>
    <message>
        <source>%1 was connected already, so nothing was changed.</source>
        <translation>%1 はすでに接続されていたため、何も変更していません。</translation>
    </message>
    <message>
        <source>%1 was not connected any more, so nothing was changed.</source>
        <translation>%1 の接続はすでに解除されていたため、何も変更していません。</translation>
    </message>
    <message>
        <source>The settings of %1 have changed since, so they stay as they are.</source>
        <translation>その後 %1 の設定が変わったため、元に戻していません。</translation>
    </message>
    <message>
        <source>Connected, but switched off in %1.</source>
        <translation>接続済みですが、%1 で無効になっています。</translation>
    </message>
    <message>
        <source>Its entry for Tarnwell belongs to something else.</source>
        <translation>Tarnwell の項目が別のものに使われています。</translation>
    </message>
    <message>
        <source>Connected to another program: %1</source>
        <translation>別のプログラムに接続されています: %1</translation>
    </message>
    <message>
        <source>Not connected.</source>
        <translation>未接続です。</translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation>接続を解除</translation>
    </message>
    <message>
        <source>Use this one</source>
        <translation>こちらに切り替える</translation>
    </message>
    <message>
        <source>Show what to add</source>
        <translation>追加する内容を表示</translation>
    </message>
    <message>
        <source>Show what to remove</source>
        <translation>削除する内容を表示</translation>
    </message>
    <message>
        <source>Look again</source>
        <translation>もう一度確認</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>接続</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>もう一度試す</translation>
    </message>
    <message>
        <source>Undoing…</source>
        <translation>元に戻しています…</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>元に戻す</translation>
    </message>
    <message numerus="yes">
        <source>Tarnwell runs these %n command(s) of %1:</source>
        <translation>
            <numerusform>Tarnwell は %1 のコマンドを %n 件実行します:</numerusform>
        </translation>
    </message>
    <message>
        <source>You add this to the settings of %1 yourself:</source>
        <translation>次の内容を、%1 の設定に手動で追加してください:</translation>
    </message>
    <message>
        <source>You remove this from the settings of %1 yourself:</source>
        <translation>次の内容を、%1 の設定から手動で削除してください:</translation>
    </message>
    <message>
        <source>Tarnwell makes this file, which %1 reads:</source>
        <translation>Tarnwell は、%1 が読み取る次のファイルを作成します:</translation>
    </message>
    <message>
        <source>Tarnwell changes this file of %1:</source>
        <translation>Tarnwell は %1 の次のファイルを変更します:</translation>
    </message>
    <message>
        <source>Commands of %1</source>
        <translation>%1 のコマンド</translation>
    </message>
    <message>
        <source>Change to the settings of %1</source>
        <translation>%1 の設定の変更</translation>
    </message>
    <message>
        <source>Entry for %1</source>
        <translation>%1 用の項目</translation>
    </message>
    <message numerus="yes">
        <source>… %n line(s) that stay …</source>
        <translation>
            <numerusform>… 変更のない %n 行 …</numerusform>
        </translation>
    </message>
    <message>
        <source>It is a link to this file, which changes: %1</source>
        <translation>これはリンクで、実際に変更されるのは次のファイルです: %1</translation>
    </message>
    <message>
        <source>Everything else in it stays. A copy of the file as it is now is kept beside it.</source>
        <translation>そのほかの部分は変わりません。現在のファイルのコピーを同じ場所に残します。</translation>
    </message>
    <message>
        <source>It is not there yet.</source>
        <translation>このファイルはまだありません。</translation>
    </message>
    <message>
        <source>Open this file: %1</source>
        <translation>このファイルを開きます: %1</translation>
    </message>
    <message>
        <source>Remove these lines and save it.</source>
        <translation>これらの行を削除して保存します。</translation>
    </message>
    <message>
        <source>Copy this text.</source>
        <translation>このテキストをコピーします。</translation>
    </message>
    <message>
        <source>Open this file, or make it: %1</source>
        <translation>このファイルを開きます（なければ作成します）: %1</translation>
    </message>
    <message>
        <source>Add the text at its end and save it.</source>
        <translation>末尾にテキストを追加して保存します。</translation>
    </message>
    <message>
        <source>Running…</source>
        <translation>実行しています…</translation>
    </message>
    <message numerus="yes">
        <source>Run the %n command(s)</source>
        <translation>
            <numerusform>%n 件のコマンドを実行</numerusform>
        </translation>
    </message>
    <message>
        <source>Writing…</source>
        <translation>書き込んでいます…</translation>
    </message>
    <message>
        <source>Write the change</source>
        <translation>変更を書き込む</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>JSON with “servers”, as Visual Studio Code reads it</source>
        <translation>JSON（「servers」、Visual Studio Code の形式）</translation>
    </message>
    <message>
        <source>JSON with “mcp”, as opencode reads it</source>
        <translation>JSON（「mcp」、opencode の形式）</translation>
    </message>
    <message>
        <source>TOML, as Codex reads it</source>
        <translation>TOML（Codex の形式）</translation>
    </message>
    <message>
        <source>YAML, as Goose reads it</source>
        <translation>YAML（Goose の形式）</translation>
    </message>
    <message>
        <source>YAML, as Continue reads it</source>
        <translation>YAML（Continue の形式）</translation>
    </message>
    <message>
        <source>JSON with “mcpServers”, as most assistants read it</source>
        <translation>JSON（「mcpServers」、多くのアシスタントの形式）</translation>
    </message>
    <message>
        <source>The command of %1 failed. The details are its own words; mend what they name and try again.</source>
        <translation>%1 のコマンドが失敗しました。「詳細」にコマンドの出力があります。原因を取り除いてから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Only you can change the settings of %1. Copy the entry into them.</source>
        <translation>%1 の設定は手動でのみ変更できます。項目をコピーして設定に追加してください。</translation>
    </message>
    <message>
        <source>This could not be done. The details say why; mend that and try again.</source>
        <translation>実行できませんでした。理由は「詳細」にあります。原因を取り除いてから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Connected. %1</source>
        <comment>a sentence follows</comment>
        <translation>接続しました。%1</translation>
    </message>
    <message>
        <source>Remove the lines of the entry “tarnwell” that is there.</source>
        <translation>すでにある項目「tarnwell」の行を削除します。</translation>
    </message>
    <message>
        <source>Somebody else may write the settings file of %1, so it stays as it is. Make sure that only you can write the file and its folder, and try again.</source>
        <translation>%1 の設定ファイルにはほかのユーザーも書き込めるため、変更していません。ファイルとフォルダーを自分だけが書き込めるようにしてから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The command of %1 succeeded but changed nothing. The details are its own words.</source>
        <translation>%1 のコマンドは正常に終了しましたが、何も変わっていません。「詳細」にコマンドの出力があります。</translation>
    </message>
    <message>
        <source>Undone. The entry for Tarnwell in %1 is as it was.</source>
        <translation>元に戻しました。%1 の Tarnwell の項目は変更前のとおりです。</translation>
    </message>
    <message>
        <source>The settings of %1 have changed meanwhile, so nothing was done. This is the new plan.</source>
        <translation>その間に %1 の設定が変わったため、何も実行していません。現在の設定に対する変更の内容は次のとおりです。</translation>
    </message>
    <message>
        <source>The settings of %1 cannot be read as TOML; the details say why. You can still add the entry by hand.</source>
        <translation>%1 の設定を TOML として読み取れません。理由は「詳細」にあります。項目は手動で追加できます。</translation>
    </message>
    <message>
        <source>The settings file of %1 cannot be read. Make sure that it is a file and that you may read it, and try again.</source>
        <translation>%1 の設定ファイルを読み取れません。通常のファイルであり、読み取る権限があることを確かめてから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Another program wrote the settings of %1 at the same time. Quit %1 and try again.</source>
        <translation>%1 の設定に、ほかのプログラムも同時に書き込みました。%1 を終了してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>%1 is running and would write its old settings over the change. Quit it and try again.</source>
        <translation>%1 が実行中です。このままでは、変更が以前の設定で上書きされてしまいます。終了してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>%1 was never started here, so its settings have no place yet. Start it once, quit it, and try again.</source>
        <translation>%1 が一度も起動されていないため、設定の保存場所がまだありません。一度起動して終了してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The settings of %1 were written, but this changed nothing. Quit %1 and try again.</source>
        <translation>%1 の設定を書き込みましたが、接続の状態は変わっていません。%1 を終了してから、もう一度お試しください。</translation>
    </message>
    <message>
        <source>The file: %1</source>
        <translation>ファイル: %1</translation>
    </message>
    <message>
        <source>End the open sessions of %1: they may use Tarnwell until then.</source>
        <translation>開いている %1 のセッションを終了してください。それまでは Tarnwell を使うことがあります。</translation>
    </message>
    <message>
        <source>Restart Visual Studio Code: %1 may use Tarnwell until then.</source>
        <translation>Visual Studio Code を再起動してください。それまで %1 は Tarnwell を使うことがあります。</translation>
    </message>
    <message>
        <source>Restart %1: it may use Tarnwell until then.</source>
        <translation>%1 を再起動してください。それまでは Tarnwell を使うことがあります。</translation>
    </message>
    <message>
        <source>Connected, but switched off in %1. Switch it on there.</source>
        <translation>接続しましたが、%1 では無効になっています。そちらで有効にしてください。</translation>
    </message>
    <message>
        <source>Disconnected.</source>
        <translation>接続を解除しました。</translation>
    </message>
    <message>
        <source>Disconnected. %1</source>
        <comment>a sentence follows</comment>
        <translation>接続を解除しました。%1</translation>
    </message>
    <message>
        <source>Tarnwell cannot tell whether it is connected.</source>
        <translation>接続されているかどうかを確認できません。</translation>
    </message>
    <message>
        <source>If there is an entry “tarnwell”, remove its lines.</source>
        <translation>項目「tarnwell」がすでにある場合は、その行を削除します。</translation>
    </message>
</context>
<context>
    <name>tarnwell::CopyBlock</name>
    <message>
        <source>Copy</source>
        <translation>コピー</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>コピー済み</translation>
    </message>
    <message>
        <source>Copied: %1</source>
        <translation>コピー済み: %1</translation>
    </message>
    <message>
        <source>Copy: %1</source>
        <translation>コピー: %1</translation>
    </message>
</context>
<context>
    <name>tarnwell::EndpointPage</name>
    <message>
        <source>S&amp;top</source>
        <translation>停止(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Start</source>
        <translation>開始(&amp;S)</translation>
    </message>
    <message>
        <source>&amp;Hide</source>
        <translation>隠す(&amp;H)</translation>
    </message>
    <message>
        <source>S&amp;how</source>
        <translation>表示(&amp;H)</translation>
    </message>
    <message>
        <source>Hide the token</source>
        <translation>トークンを隠す</translation>
    </message>
    <message>
        <source>Show the token</source>
        <translation>トークンを表示する</translation>
    </message>
    <message>
        <source>Without the token, every program and every user of this computer could use your mailbox through the endpoint. Give it only to programs that you trust.</source>
        <translation>トークンがなければ、このコンピューターのすべてのプログラムとユーザーが、ローカル接続を通じてメールボックスを利用できてしまいます。信頼できるプログラムにだけ渡してください。</translation>
    </message>
    <message>
        <source>Without a token, every program and every user of this computer could use your mailbox through the endpoint. Yours is made when you start it for the first time, and kept in the keyring.</source>
        <translation>トークンがなければ、このコンピューターのすべてのプログラムとユーザーが、ローカル接続を通じてメールボックスを利用できてしまいます。トークンは初めて開始したときに作られ、キーリングに保存されます。</translation>
    </message>
    <message>
        <source>Local endpoint</source>
        <translation>ローカル接続</translation>
    </message>
    <message>
        <source>For programs on this computer that speak HTTP. An assistant that can start Tarnwell itself is better connected on the page Assistants: that needs no port and no token.</source>
        <translation>このコンピューターで HTTP を使うプログラムのための接続です。Tarnwell を自分で起動できるアシスタントは、「アシスタント」のページで接続してください。ポートもトークンもいりません。</translation>
    </message>
    <message>
        <source>Address of the endpoint</source>
        <translation>ローカル接続のアドレス</translation>
    </message>
    <message>
        <source>Port</source>
        <translation>ポート</translation>
    </message>
    <message>
        <source>Token</source>
        <translation>トークン</translation>
    </message>
    <message>
        <source>&amp;Renew</source>
        <translation>更新(&amp;R)</translation>
    </message>
    <message>
        <source>Renew the token</source>
        <translation>トークンを更新する</translation>
    </message>
    <message>
        <source>In the client</source>
        <translation>クライアントの設定</translation>
    </message>
    <message>
        <source>Clients that speak HTTP take a block like this one. Copying takes the token along.</source>
        <translation>HTTP で接続するクライアントには、このような設定を書きます。コピーすると、トークンも含まれます。</translation>
    </message>
    <message>
        <source>Settings for the client</source>
        <translation>クライアントに書く設定</translation>
    </message>
    <message>
        <source>It can be changed while the endpoint is stopped.</source>
        <translation>ローカル接続が停止しているときに変更できます。</translation>
    </message>
</context>
<context>
    <name>tarnwell::EndpointTexts</name>
    <message>
        <source>%1 Port %2 is free.</source>
        <translation>%1ポート %2 は空いています。</translation>
    </message>
    <message>
        <source>%1 Choose another port.</source>
        <translation>%1別のポートを選んでください。</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>停止中</translation>
    </message>
    <message>
        <source>Starting</source>
        <translation>開始しています</translation>
    </message>
    <message>
        <source>Running</source>
        <translation>動作中</translation>
    </message>
    <message>
        <source>Stopping</source>
        <translation>停止しています</translation>
    </message>
    <message>
        <source>Not started</source>
        <translation>開始できませんでした</translation>
    </message>
    <message>
        <source>The token is taken from the keyring, and the port is opened.</source>
        <translation>キーリングからトークンを取り出し、ポートを開いています。</translation>
    </message>
    <message>
        <source>Programs on this computer that know the token can use your mailbox as far as the safety settings allow. It ends with this window.</source>
        <translation>トークンを知っているこのコンピューターのプログラムは、安全設定の範囲でメールボックスを利用できます。このウィンドウを閉じると終了します。</translation>
    </message>
    <message>
        <source>The port is closed. A call that runs is finished first, which takes a minute at most.</source>
        <translation>ポートは閉じました。実行中の呼び出しが終わるのを待っています（長くても 1 分ほどです）。</translation>
    </message>
    <message>
        <source>The endpoint does not listen. It never starts by itself.</source>
        <translation>ローカル接続は待ち受けていません。自動で始まることはありません。</translation>
    </message>
    <message>
        <source>Another program already uses port %1.</source>
        <translation>ポート %1 は、すでに別のプログラムが使っています。</translation>
    </message>
    <message>
        <source>Only programs of the system may use port %1.</source>
        <translation>ポート %1 を使えるのは、システムのプログラムだけです。</translation>
    </message>
    <message>
        <source>The endpoint could not be started.</source>
        <translation>ローカル接続を開始できませんでした。</translation>
    </message>
    <message>
        <source>The settings could not be saved. The page shows what holds.</source>
        <translation>設定を保存できませんでした。画面には現在有効な設定を表示しています。</translation>
    </message>
    <message>
        <source>Use &amp;port %1</source>
        <translation>ポート %1 を使う(&amp;P)</translation>
    </message>
    <message>
        <source>Renew the token?</source>
        <translation>トークンを更新しますか？</translation>
    </message>
    <message>
        <source>Every client that uses the endpoint must be given the new token. Until then it is refused.</source>
        <translation>ローカル接続を使うすべてのクライアントに、新しいトークンを設定する必要があります。設定するまで、接続は拒否されます。</translation>
    </message>
    <message>
        <source>Renew</source>
        <translation>更新する</translation>
    </message>
    <message>
        <source>Keep</source>
        <translation>更新しない</translation>
    </message>
    <message>
        <source>Close the window?</source>
        <translation>ウィンドウを閉じますか？</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>Leave open</source>
        <translation>閉じない</translation>
    </message>
    <message>
        <source>%1 If you do not know that program, renew the token.</source>
        <translation>%1心当たりのないプログラムの場合は、トークンを更新してください。</translation>
    </message>
    <message>
        <source>The new token is in effect now. Give it to every client that uses the endpoint.</source>
        <translation>新しいトークンが有効になりました。ローカル接続を使うすべてのクライアントに設定してください。</translation>
    </message>
    <message>
        <source>The token could not be renewed. The previous one stays in effect.</source>
        <translation>トークンを更新できませんでした。これまでのトークンが引き続き有効です。</translation>
    </message>
    <message>
        <source>The local endpoint is running. It ends with the window, and clients that use it lose their connection.</source>
        <translation>ローカル接続が動作しています。ウィンドウを閉じるとローカル接続も終了し、利用中のクライアントは接続できなくなります。</translation>
    </message>
</context>
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
    <name>tarnwell::PasswordField</name>
    <message>
        <source>S&amp;how the password</source>
        <translation>パスワードを表示(&amp;H)</translation>
    </message>
</context>
<context>
    <name>tarnwell::SafetyPage</name>
    <message>
        <source>The settings could not be saved. The page shows what holds.</source>
        <translation>設定を保存できませんでした。画面には現在有効な設定を表示しています。</translation>
    </message>
    <message>
        <source>Safety settings</source>
        <translation>安全設定（Safety settings）</translation>
    </message>
    <message>
        <source>What an assistant may read and change. Each change counts from the assistant&apos;s next call on.</source>
        <translation>アシスタントが読める範囲と変更できる範囲を決めます。変更は、アシスタントの次の呼び出しから有効になります。</translation>
    </message>
    <message>
        <source>Reading</source>
        <translation>読み取り</translation>
    </message>
    <message>
        <source>Changes</source>
        <translation>変更</translation>
    </message>
    <message>
        <source>&amp;Back to the safe values</source>
        <translation>安全な値に戻す(&amp;B)</translation>
    </message>
</context>
<context>
    <name>tarnwell::SafetyTexts</name>
    <message>
        <source>While this is on, an assistant changes nothing in the mailbox, whatever is allowed below. When it is off, an assistant may do what is allowed under “Changes”.</source>
        <translation>オンの間は、下で何を許可していても、アシスタントはメールボックスを変更しません。オフにすると、アシスタントは「変更」で許可された操作を行えます。</translation>
    </message>
    <message>
        <source>The text of mail with one-time codes, password resets and security alerts stays in the mailbox. When this is off, whoever steers the assistant could get into your accounts.</source>
        <translation>ワンタイムコード、パスワード再設定、セキュリティ通知のメール本文を渡しません。オフにすると、アシスタントを操る第三者があなたのアカウントに入れるおそれがあります。</translation>
    </message>
    <message>
        <source>Also withholds mail that only looks like it carries a code or an account link, now and then a harmless one. When this is off, most account links are handed out.</source>
        <translation>コードやアカウントのリンクを含むように見えるだけのメールも渡しません。まれに無害なメールも対象になります。オフにすると、アカウントのリンクの多くが渡されます。</translation>
    </message>
    <message>
        <source>An assistant may mark a message as read, one in each call. You may then take new mail for old.</source>
        <translation>アシスタントは、1 回の呼び出しで 1 通のメールを既読にできます。新着メールを見落とすことがあります。</translation>
    </message>
    <message>
        <source>An assistant may move a message from the inbox to another folder, one in each call. Nothing is lost, but you may have to look for it.</source>
        <translation>アシスタントは、1 回の呼び出しで受信トレイのメール 1 通を別のフォルダーに移動できます。なくなることはありませんが、探す手間がかかることがあります。</translation>
    </message>
    <message>
        <source>An assistant may move a message from the inbox to the trash, one in each call. Many providers empty the trash by themselves after some weeks.</source>
        <translation>アシスタントは、1 回の呼び出しで受信トレイのメール 1 通をゴミ箱に移動できます。多くのプロバイダーは、数週間後にゴミ箱を自動的に空にします。</translation>
    </message>
    <message>
        <source>Where the server cannot move, the message is copied and the original is marked as deleted. The original stays until a mail program removes it for good.</source>
        <translation>サーバーが移動に対応していないとき、メールをコピーし、元のメールに削除の印を付けます。元のメールは、メールソフトが完全に削除するまで残ります。</translation>
    </message>
    <message>
        <source>The most messages that one call of an assistant handles. The higher it is, the more of your mail an assistant sees at once.</source>
        <translation>アシスタントが 1 回の呼び出しで扱えるメールの最大数です。大きいほど、一度に多くのメールが見られます。</translation>
    </message>
    <message>
        <source>The most messages that are fetched from the server at once. The smaller one of this number and the one above counts.</source>
        <translation>サーバーから一度に取得するメールの最大数です。上の数と比べて小さいほうが有効です。</translation>
    </message>
    <message>
        <source>The most characters of a message&apos;s text that one call returns. A summary shows up to %1 of them in any case.</source>
        <translation>1 回の呼び出しで渡すメール本文の最大文字数です。要約では、この設定にかかわらず最大 %1 文字まで表示されます。</translation>
    </message>
    <message>
        <source>Without effect while read-only mode is on.</source>
        <translation>読み取り専用モードがオンの間は無効です。</translation>
    </message>
    <message>
        <source>Without effect while neither folder moves nor the trash are allowed.</source>
        <translation>フォルダーへの移動もゴミ箱への移動も許可されていないため、無効です。</translation>
    </message>
    <message>
        <source>Without effect while security mail is not withheld.</source>
        <translation>「セキュリティメールを渡さない」がオフの間は無効です。</translation>
    </message>
    <message>
        <source>Without effect at the moment, because the other number is smaller.</source>
        <translation>もう一方の数のほうが小さいため、現在は無効です。</translation>
    </message>
    <message>
        <source>It may mark messages as read and move them to other folders and to the trash.</source>
        <translation>メールを既読にし、別のフォルダーやゴミ箱に移動できます。</translation>
    </message>
    <message>
        <source>It may mark messages as read and move them to other folders.</source>
        <translation>メールを既読にし、別のフォルダーに移動できます。</translation>
    </message>
    <message>
        <source>It may mark messages as read and move them to the trash.</source>
        <translation>メールを既読にし、ゴミ箱に移動できます。</translation>
    </message>
    <message>
        <source>It may mark messages as read and change nothing else.</source>
        <translation>メールを既読にできますが、ほかの変更はできません。</translation>
    </message>
    <message>
        <source>It may move messages to other folders and to the trash.</source>
        <translation>メールを別のフォルダーやゴミ箱に移動できます。</translation>
    </message>
    <message>
        <source>It may move messages to other folders and change nothing else.</source>
        <translation>メールを別のフォルダーに移動できますが、ほかの変更はできません。</translation>
    </message>
    <message>
        <source>It may move messages to the trash and change nothing else.</source>
        <translation>メールをゴミ箱に移動できますが、ほかの変更はできません。</translation>
    </message>
    <message>
        <source>It may change nothing.</source>
        <translation>変更は一切できません。</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <comment>two sentences, one after the other</comment>
        <translation>%1%2</translation>
    </message>
    <message>
        <source>Where the server cannot move, it may leave originals behind that are marked as deleted.</source>
        <translation>サーバーが移動に対応していないときは、削除の印の付いた元のメールが残ることがあります。</translation>
    </message>
    <message>
        <source>Read-only mode</source>
        <translation>読み取り専用モード</translation>
    </message>
    <message>
        <source>Withhold security mail</source>
        <translation>セキュリティメールを渡さない</translation>
    </message>
    <message>
        <source>Withhold strictly</source>
        <translation>疑わしいメールも渡さない</translation>
    </message>
    <message>
        <source>Mark-as-read</source>
        <translation>既読にする</translation>
    </message>
    <message>
        <source>Folder moves</source>
        <translation>フォルダーへの移動</translation>
    </message>
    <message>
        <source>Trash</source>
        <translation>ゴミ箱への移動</translation>
    </message>
    <message>
        <source>Move on servers without MOVE (COPY + mark deleted)</source>
        <translation>MOVE のないサーバーでの移動（COPY ＋ 削除の印）</translation>
    </message>
    <message>
        <source>Messages in one call</source>
        <translation>1 回の呼び出しのメール数</translation>
    </message>
    <message>
        <source>Messages fetched at once</source>
        <translation>一度に取得するメール数</translation>
    </message>
    <message>
        <source>Characters of a text</source>
        <translation>本文の文字数</translation>
    </message>
    <message>
        <source>While this is on, an assistant reads: “%1”</source>
        <translation>オンの間、アシスタントには次のように表示されます: 「%1」</translation>
    </message>
    <message>
        <source>While this is off, an assistant reads: “%1”</source>
        <translation>オフの間、アシスタントには次のように表示されます: 「%1」</translation>
    </message>
    <message numerus="yes">
        <source>An assistant may read at most %n message(s) a call.</source>
        <translation>
            <numerusform>アシスタントが 1 回の呼び出しで読めるメールは最大 %n 通です。</numerusform>
        </translation>
    </message>
    <message>
        <source>One-time codes and account links are handed out like any other mail.</source>
        <translation>ワンタイムコードやアカウントのリンクも、ほかのメールと同じように渡されます。</translation>
    </message>
    <message>
        <source>Mail that names a one-time code or a password reset is withheld.</source>
        <translation>ワンタイムコードやパスワード再設定と書かれたメールは渡されません。</translation>
    </message>
    <message>
        <source>Mail with one-time codes and account links is withheld, as far as it is recognised.</source>
        <translation>ワンタイムコードやアカウントのリンクを含むメールは、判別できる限り渡されません。</translation>
    </message>
    <message numerus="yes">
        <source>It gets at most %Ln character(s) of a text.</source>
        <translation>
            <numerusform>渡される本文は最大 %Ln 文字です。</numerusform>
        </translation>
    </message>
    <message>
        <source>Hand out security mail?</source>
        <translation>セキュリティメールを渡しますか？</translation>
    </message>
    <message>
        <source>An assistant may then read one-time codes and links that open your accounts. What it has read cannot be taken back.</source>
        <translation>アシスタントは、ワンタイムコードや、あなたのアカウントに入れるリンクを読めるようになります。一度読まれた内容は取り消せません。</translation>
    </message>
    <message>
        <source>&amp;Hand out</source>
        <translation>渡す(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;Keep withholding</source>
        <translation>渡さない(&amp;K)</translation>
    </message>
    <message>
        <source>Withhold less?</source>
        <translation>渡さないメールを減らしますか？</translation>
    </message>
    <message>
        <source>An assistant may then read codes and account links in mail that uses none of the usual words. What it has read cannot be taken back.</source>
        <translation>アシスタントは、よくある言葉を使わないメールのコードやアカウントのリンクを読めるようになります。一度読まれた内容は取り消せません。</translation>
    </message>
    <message>
        <source>&amp;Withhold less</source>
        <translation>減らす(&amp;W)</translation>
    </message>
    <message>
        <source>Nothing becomes possible by that alone, because every change is switched off.</source>
        <translation>すべての変更がオフになっているため、これだけでは何もできるようになりません。</translation>
    </message>
    <message>
        <source>This becomes possible for an assistant:</source>
        <translation>アシスタントは次のことができるようになります。</translation>
    </message>
    <message>
        <source>Switch read-only mode off?</source>
        <translation>読み取り専用モードをオフにしますか？</translation>
    </message>
    <message>
        <source>&amp;Switch off</source>
        <translation>オフにする(&amp;S)</translation>
    </message>
    <message>
        <source>S&amp;tay read-only</source>
        <translation>読み取り専用のまま(&amp;T)</translation>
    </message>
    <message>
        <source>The settings file is damaged, so the defaults hold, which are read-only. The next change begins a new file and keeps a copy of the damaged one beside it.</source>
        <translation>設定ファイルが壊れているため、初期設定（読み取り専用）が有効になっています。次に変更すると、新しいファイルを作り、壊れたファイルのコピーを同じ場所に残します。</translation>
    </message>
    <message>
        <source>Somebody else may have written the settings file. It is set aside, and the defaults hold, which are read-only. Nothing can be saved until that is put right.</source>
        <translation>設定ファイルをほかのユーザーが書き換えた可能性があります。このファイルは使わず、初期設定（読み取り専用）が有効になっています。この問題が解決するまで保存できません。</translation>
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
<context>
    <name>tarnwell::TryItCalls</name>
    <message>
        <source>Call</source>
        <translation>呼び出し</translation>
    </message>
    <message>
        <source>What an assistant sends</source>
        <translation>アシスタントが送る内容</translation>
    </message>
    <message>
        <source>What an assistant receives, byte for byte</source>
        <translation>アシスタントが受け取る内容（一字一句そのまま）</translation>
    </message>
</context>
<context>
    <name>tarnwell::TryItChanges</name>
    <message>
        <source>The folders could not be read</source>
        <translation>フォルダーを読み取れませんでした</translation>
    </message>
    <message>
        <source>Reading the folders…</source>
        <translation>フォルダーを読み取り中…</translation>
    </message>
    <message>
        <source>Asking…</source>
        <translation>確認中…</translation>
    </message>
    <message>
        <source>What would &amp;happen?</source>
        <translation>操作するとどうなる？(&amp;H)</translation>
    </message>
    <message>
        <source>Shows what an assistant could do with this message.</source>
        <translation>アシスタントがこのメールに何をできるかを表示します。</translation>
    </message>
    <message>
        <source>These only ask. The message stays as it is.</source>
        <translation>確認するだけで、メールはそのまま残ります。</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>フォルダー</translation>
    </message>
    <message>
        <source>If it were &amp;moved there?</source>
        <translation>ここへ移動したら？(&amp;M)</translation>
    </message>
    <message>
        <source>If it were &amp;trashed?</source>
        <translation>ゴミ箱に入れたら？(&amp;T)</translation>
    </message>
    <message>
        <source>If it were mar&amp;ked as read?</source>
        <translation>既読にしたら？(&amp;K)</translation>
    </message>
    <message>
        <source>There is no other folder.</source>
        <translation>ほかにフォルダーはありません。</translation>
    </message>
</context>
<context>
    <name>tarnwell::TryItMessage</name>
    <message>
        <source>Unread</source>
        <translation>未読</translation>
    </message>
    <message>
        <source>Has attachments, which an assistant never gets</source>
        <translation>添付ファイルあり（アシスタントには渡しません）</translation>
    </message>
    <message>
        <source>The text that an assistant gets</source>
        <translation>アシスタントに渡される本文</translation>
    </message>
    <message>
        <source>What an assistant reads in place of the text</source>
        <translation>本文の代わりにアシスタントが読む文</translation>
    </message>
    <message>
        <source>The chosen message</source>
        <translation>選んだメール</translation>
    </message>
    <message>
        <source>What a search shows of the text</source>
        <translation>検索結果に出る本文</translation>
    </message>
</context>
<context>
    <name>tarnwell::TryItPage</name>
    <message>
        <source>The settings have changed since this search.</source>
        <translation>この検索のあとに設定が変わりました。</translation>
    </message>
    <message>
        <source>Search a&amp;gain</source>
        <translation>もう一度検索(&amp;G)</translation>
    </message>
    <message>
        <source>Open “&amp;Account”</source>
        <translation>「アカウント」を開く(&amp;A)</translation>
    </message>
    <message>
        <source>The search was stopped.</source>
        <translation>検索をキャンセルしました。</translation>
    </message>
    <message>
        <source>Try it</source>
        <translation>試してみる</translation>
    </message>
    <message>
        <source>What an assistant sees of your inbox, by its own tools and with your settings. Nothing is changed, and nothing is kept.</source>
        <translation>アシスタントと同じツールと今の設定で、受信トレイがどう見えるかを確かめます。何も変更せず、何も保存しません。</translation>
    </message>
    <message>
        <source>See it with the eyes of an assistant</source>
        <translation>アシスタントの目で見てみましょう</translation>
    </message>
    <message>
        <source>Search your inbox. For each message you see what an assistant would get, what is withheld, and which word is the reason. When you leave this page, all of it is forgotten.</source>
        <translation>受信トレイを検索すると、メールごとに、アシスタントに渡される内容、渡されない内容、その理由となった言葉がわかります。このページを離れると、すべて消去されます。</translation>
    </message>
    <message>
        <source>Ca&amp;ncel</source>
        <translation>キャンセル(&amp;N)</translation>
    </message>
    <message>
        <source>The exact &amp;JSON</source>
        <translation>実際の JSON(&amp;J)</translation>
    </message>
    <message>
        <source>&amp;Back</source>
        <translation>戻る(&amp;B)</translation>
    </message>
    <message>
        <source>Messages</source>
        <translation>メール</translation>
    </message>
    <message>
        <source>Choose a message to see what an assistant gets of it.</source>
        <translation>メールを選ぶと、アシスタントに渡される内容が表示されます。</translation>
    </message>
    <message>
        <source>What an assistant sends, and byte for byte what it receives</source>
        <translation>アシスタントが送信する内容と、受信する内容（一字一句そのまま）</translation>
    </message>
</context>
<context>
    <name>tarnwell::TryItSearch</name>
    <message>
        <source>Search the inbox, or leave this empty for the newest messages</source>
        <translation>受信トレイを検索（空欄なら新しい順に表示）</translation>
    </message>
    <message>
        <source>Search the inbox</source>
        <translation>受信トレイを検索</translation>
    </message>
    <message>
        <source>&amp;Filters</source>
        <translation>絞り込み(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;Search</source>
        <translation>検索(&amp;S)</translation>
    </message>
    <message>
        <source>Fr&amp;om</source>
        <translation>差出人(&amp;O)</translation>
    </message>
    <message>
        <source>S&amp;ubject</source>
        <translation>件名(&amp;U)</translation>
    </message>
    <message>
        <source>&amp;Received</source>
        <translation>受信日(&amp;R)</translation>
    </message>
    <message>
        <source>At any time</source>
        <translation>指定なし</translation>
    </message>
    <message>
        <source>Since yesterday</source>
        <translation>昨日から</translation>
    </message>
    <message>
        <source>In the last 7 days</source>
        <translation>過去 7 日間</translation>
    </message>
    <message>
        <source>In the last 30 days</source>
        <translation>過去 30 日間</translation>
    </message>
    <message>
        <source>In the last 365 days</source>
        <translation>過去 365 日間</translation>
    </message>
    <message>
        <source>Unread messages onl&amp;y</source>
        <translation>未読のみ(&amp;Y)</translation>
    </message>
    <message>
        <source>Unread messages only</source>
        <translation>未読のみ</translation>
    </message>
</context>
<context>
    <name>tarnwell::TryItTexts</name>
    <message>
        <source>one-time code</source>
        <translation>ワンタイムコード</translation>
    </message>
    <message>
        <source>verification code</source>
        <translation>認証コード</translation>
    </message>
    <message>
        <source>password reset</source>
        <translation>パスワード再設定</translation>
    </message>
    <message>
        <source>security code</source>
        <translation>セキュリティコード</translation>
    </message>
    <message>
        <source>sign-in code</source>
        <translation>ログインコード</translation>
    </message>
    <message>
        <source>recovery code</source>
        <translation>復旧コード</translation>
    </message>
    <message>
        <source>security alert</source>
        <translation>セキュリティ通知</translation>
    </message>
    <message>
        <source>two-factor sign-in</source>
        <translation>2 要素認証</translation>
    </message>
    <message>
        <source>link into an account</source>
        <translation>アカウントのリンク</translation>
    </message>
    <message>
        <source>Withheld: “%1” in the subject</source>
        <translation>渡しません: 件名に「%1」</translation>
    </message>
    <message>
        <source>Withheld: “%1” in the sender</source>
        <translation>渡しません: 差出人に「%1」</translation>
    </message>
    <message>
        <source>Withheld: “%1” in the text</source>
        <translation>渡しません: 本文に「%1」</translation>
    </message>
    <message>
        <source>Allowed: an assistant could mark this message as read. Nothing was changed now.</source>
        <translation>許可されています。アシスタントはこのメールを既読にできます。今は何も変更していません。</translation>
    </message>
    <message>
        <source>Allowed: an assistant could move this message to “%1”. Nothing was changed now.</source>
        <translation>許可されています。アシスタントはこのメールを「%1」に移動できます。今は何も変更していません。</translation>
    </message>
    <message>
        <source>No message was found.</source>
        <translation>メールは見つかりませんでした。</translation>
    </message>
    <message>
        <source>No message was found. An assistant would find none either.</source>
        <translation>メールは見つかりませんでした。アシスタントにも見つかりません。</translation>
    </message>
    <message numerus="yes">
        <source>%n message(s)</source>
        <translation>
            <numerusform>メール %n 通</numerusform>
        </translation>
    </message>
    <message>
        <source>none withheld</source>
        <translation>すべて渡します</translation>
    </message>
    <message numerus="yes">
        <source>%n withheld</source>
        <translation>
            <numerusform>うち %n 通は渡しません</numerusform>
        </translation>
    </message>
    <message>
        <source>%1, %2.</source>
        <translation>%1、%2。</translation>
    </message>
    <message>
        <source>%1, %2. An assistant sees exactly this.</source>
        <translation>%1、%2。アシスタントからもこのとおりに見えます。</translation>
    </message>
    <message>
        <source>Asking the mail server…</source>
        <translation>メールサーバーに問い合わせています…</translation>
    </message>
    <message>
        <source>%1 of %2 messages are read.</source>
        <translation>%2 通のうち %1 通を読み取りました。</translation>
    </message>
    <message>
        <source>No subject</source>
        <translation>件名なし</translation>
    </message>
    <message>
        <source>No sender</source>
        <translation>差出人なし</translation>
    </message>
    <message>
        <source>No text</source>
        <translation>本文なし</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <comment>a day and a time</comment>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>Unread</source>
        <translation>未読</translation>
    </message>
    <message>
        <source>Has attachments</source>
        <translation>添付ファイルあり</translation>
    </message>
    <message>
        <source>“%1” in the subject (%2)</source>
        <translation>件名に「%1」（%2）</translation>
    </message>
    <message>
        <source>“%1” in the sender (%2)</source>
        <translation>差出人に「%1」（%2）</translation>
    </message>
    <message>
        <source>“%1” in the text (%2)</source>
        <translation>本文に「%1」（%2）</translation>
    </message>
    <message>
        <source>The text is withheld.</source>
        <translation>本文は渡しません。</translation>
    </message>
    <message>
        <source>The beginning of the text is handed out. Asking for the rest…</source>
        <translation>本文の冒頭は渡します。残りを確認しています…</translation>
    </message>
    <message>
        <source>The text is withheld. An assistant is told why instead.</source>
        <translation>本文は渡しません。代わりに理由を伝えます。</translation>
    </message>
    <message>
        <source>There is no text that could be handed out.</source>
        <translation>渡せる本文がありません。</translation>
    </message>
    <message>
        <source>The text could not be read.</source>
        <translation>本文を読み取れませんでした。</translation>
    </message>
    <message>
        <source>The text is handed out.</source>
        <translation>本文を渡します。</translation>
    </message>
    <message>
        <source>The text is handed out, because withholding is switched off.</source>
        <translation>「セキュリティメールを渡さない」がオフのため、本文を渡します。</translation>
    </message>
    <message>
        <source>An assistant gets %1 of %2 characters in one call.</source>
        <translation>1 回の呼び出しで渡すのは、%2 文字のうち %1 文字です。</translation>
    </message>
    <message>
        <source>An assistant reads: “%1”</source>
        <translation>アシスタントには次のように表示されます: 「%1」</translation>
    </message>
    <message>
        <source>Refused, because “%1” is on. Nothing was changed.</source>
        <translation>「%1」がオンのため、拒否されます。何も変更していません。</translation>
    </message>
    <message>
        <source>Refused, because “%1” is off. Nothing was changed.</source>
        <translation>「%1」がオフのため、拒否されます。何も変更していません。</translation>
    </message>
    <message>
        <source>This would fail. Nothing was changed.</source>
        <translation>この操作は失敗します。何も変更していません。</translation>
    </message>
    <message>
        <source>No account is set up yet. Set it up on the page “Account”.</source>
        <translation>アカウントがまだ設定されていません。「アカウント」のページで設定してください。</translation>
    </message>
    <message>
        <source>No password is stored for your account. Type it on the page “Account” and save it.</source>
        <translation>アカウントのパスワードが保存されていません。「アカウント」のページで入力して保存してください。</translation>
    </message>
    <message>
        <source>No program keeps passwords on this computer. The page “Account” says what to install.</source>
        <translation>このコンピューターにはパスワードを保管するプログラムがありません。必要なものは「アカウント」のページで確認できます。</translation>
    </message>
    <message>
        <source>The keyring is locked. Unlock it on the page “Account”, then search again.</source>
        <translation>キーリングがロックされています。「アカウント」のページでロックを解除してから、もう一度検索してください。</translation>
    </message>
    <message>
        <source>The keyring did not give the password. Type it again on the page “Account” and save it.</source>
        <translation>キーリングからパスワードを取得できませんでした。「アカウント」のページでもう一度入力して保存してください。</translation>
    </message>
    <message>
        <source>The mail server refused address or password. Check both on the page “Account”.</source>
        <translation>メールサーバーにメールアドレスまたはパスワードを拒否されました。「アカウント」のページで両方を確認してください。</translation>
    </message>
    <message>
        <source>The mail server cannot be reached. Check that this computer is online, or test the connection on the page “Account”.</source>
        <translation>メールサーバーに接続できません。このコンピューターがオンラインか確認するか、「アカウント」のページで接続をテストしてください。</translation>
    </message>
    <message>
        <source>The mail server took too long to answer. Try again in a few minutes.</source>
        <translation>メールサーバーの応答に時間がかかりすぎました。数分後にもう一度お試しください。</translation>
    </message>
    <message>
        <source>The tool could not do its work. The sentence below says why.</source>
        <translation>ツールは処理を完了できませんでした。理由は下の文のとおりです。</translation>
    </message>
    <message>
        <source>The search (%1)</source>
        <translation>検索（%1）</translation>
    </message>
    <message>
        <source>The text of the message (%1)</source>
        <translation>メールの本文（%1）</translation>
    </message>
    <message>
        <source>The change that was tried (%1)</source>
        <translation>確かめた操作（%1）</translation>
    </message>
</context>
</TS>
