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
        <source>The assistant calls %1.</source>
        <translation>アシスタントが %1 を呼び出しました。</translation>
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
        <source>%1 gave %n message(s) (%2 s).</source>
        <translation>
            <numerusform>%1 は %n 件のメールを返しました（%2 秒）。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 gave %n folder(s) (%2 s).</source>
        <translation>
            <numerusform>%1 は %n 個のフォルダーを返しました（%2 秒）。</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 gave a text of %n character(s) (%2 s).</source>
        <translation>
            <numerusform>%1 は %n 文字の本文を返しました（%2 秒）。</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 withheld the text of the message (%2 s).</source>
        <translation>%1 はメールの本文を非公開にしました（%2 秒）。</translation>
    </message>
    <message>
        <source>%1 found no text in the message (%2 s).</source>
        <translation>%1 が調べたメールには本文がありませんでした（%2 秒）。</translation>
    </message>
    <message>
        <source>%1 answered that an account is set up (%2 s).</source>
        <translation>%1 は、アカウントが設定済みだと答えました（%2 秒）。</translation>
    </message>
    <message>
        <source>%1 answered that no account is set up (%2 s).</source>
        <translation>%1 は、アカウントが未設定だと答えました（%2 秒）。</translation>
    </message>
    <message>
        <source>%1 changed the mailbox (%2 s).</source>
        <translation>%1 がメールボックスを変更しました（%2 秒）。</translation>
    </message>
    <message>
        <source>%1 told what it would change, and changed nothing (%2 s).</source>
        <translation>%1 は変更の内容だけを伝え、何も変更しませんでした（%2 秒）。</translation>
    </message>
    <message>
        <source>%1 was refused and changed nothing (%2 s).</source>
        <translation>%1 は拒否され、何も変更しませんでした（%2 秒）。</translation>
    </message>
    <message>
        <source>%1 answered: %2 (%3 s).</source>
        <translation>%1 の答え: %2（%3 秒）</translation>
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
        <translation>%1 としてメールサーバーにサインインしました。</translation>
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
        <source>%1 gave %n message(s), %2 withheld (%3 s).</source>
        <translation>
            <numerusform>%1 は %n 件のメールを返しました。うち %2 件は非公開です（%3 秒）。</numerusform>
        </translation>
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
        <source>There is no entry yet.</source>
        <translation>記録はまだありません。</translation>
    </message>
    <message>
        <source>Save the entries</source>
        <translation>記録を保存</translation>
    </message>
    <message>
        <source>What this app and the helpers of your assistants did. They write no mail and no password into it.</source>
        <translation>このアプリと、アシスタントのヘルパーの動作記録です。メールの内容やパスワードは書き込みません。</translation>
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
