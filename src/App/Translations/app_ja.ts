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
        <translation>Tarnwell %1 は、AI アシスタントが一つのメールボックスを扱えるようにします。アシスタントとは &lt;a href=&quot;%2&quot;&gt;Model Context Protocol&lt;/a&gt; でつながります。&lt;a href=&quot;%3&quot;&gt;MIT ライセンス&lt;/a&gt;の自由ソフトウェアです。</translation>
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
        <translation>中止(&amp;C)</translation>
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
        <translation>初期設定では読み取りだけが許可され、認証コードやアカウントのリンクを含むメールは公開されません。</translation>
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
        <translation>テストを中止しました。</translation>
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
        <translation>設定ファイルが他のユーザーに書き換えられた可能性があるため、ファイルは使われず、保存もできません。ファイルを削除するか、所有者と権限を直してください: %1</translation>
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
        <source>There is no entry yet.</source>
        <translation>記録はまだありません。</translation>
    </message>
    <message>
        <source>Save the entries</source>
        <translation>記録を保存</translation>
    </message>
    <message>
        <source>What this app and the helpers of your assistants did. It holds no mail and no password.</source>
        <translation>このアプリと、アシスタントのヘルパーの動作記録です。メールの内容やパスワードは書き込みません。</translation>
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
        <translation>コピーしました</translation>
    </message>
    <message>
        <source>Copied: %1</source>
        <translation>コピーしました: %1</translation>
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
        <translation>トークンがなければ、このコンピューターのすべてのプログラムと利用者が、ローカル接続を通じてメールボックスを利用できてしまいます。信頼できるプログラムにだけ渡してください。</translation>
    </message>
    <message>
        <source>Without a token, every program and every user of this computer could use your mailbox through the endpoint. Yours is made when you start it for the first time, and kept in the keyring.</source>
        <translation>トークンがなければ、このコンピューターのすべてのプログラムと利用者が、ローカル接続を通じてメールボックスを利用できてしまいます。トークンは初めて開始したときに作られ、キーリングに保存されます。</translation>
    </message>
    <message>
        <source>Local endpoint</source>
        <translation>ローカル接続</translation>
    </message>
    <message>
        <source>For programs on this computer that speak HTTP. An assistant that can start Tarnwell itself is better connected on the page Assistants: that needs no port and no token.</source>
        <translation>HTTP で接続するこのコンピューターのプログラムのためのものです。Tarnwell を自分で起動できるアシスタントは、「アシスタント」のページで接続してください。ポートもトークンもいりません。</translation>
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
        <source>It can be changed while the endpoint does not run.</source>
        <translation>ローカル接続が停止しているときに変更できます。</translation>
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
        <source>Nothing listens. The endpoint never starts by itself.</source>
        <translation>何も待ち受けていません。ローカル接続が自動で始まることはありません。</translation>
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
        <source>The new token holds now. Give it to every client that uses the endpoint.</source>
        <translation>新しいトークンが有効になりました。ローカル接続を使うすべてのクライアントに設定してください。</translation>
    </message>
    <message>
        <source>The token could not be renewed. The one before holds.</source>
        <translation>トークンを更新できませんでした。これまでのトークンが引き続き有効です。</translation>
    </message>
    <message>
        <source>The settings could not be saved. The page shows what holds.</source>
        <translation>設定を保存できませんでした。このページには、現在有効な設定が表示されています。</translation>
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
        <source>The local endpoint runs. It ends with the window, and clients that use it lose their connection.</source>
        <translation>ローカル接続が動作しています。ウィンドウを閉じるとローカル接続も終了し、利用中のクライアントは接続できなくなります。</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
    <message>
        <source>Leave open</source>
        <translation>閉じない</translation>
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
        <translation>アシスタントは、1 回の呼び出しで受信箱のメール 1 通を別のフォルダーに移動できます。なくなることはありませんが、探す手間がかかることがあります。</translation>
    </message>
    <message>
        <source>An assistant may move a message from the inbox to the trash, one in each call. Many providers empty the trash by themselves after some weeks.</source>
        <translation>アシスタントは、1 回の呼び出しで受信箱のメール 1 通をゴミ箱に移動できます。多くのプロバイダーは、数週間後にゴミ箱を自動的に空にします。</translation>
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
        <translation>オンの間、アシスタントには次のように表示されます：「%1」</translation>
    </message>
    <message>
        <source>While this is off, an assistant reads: “%1”</source>
        <translation>オフの間、アシスタントには次のように表示されます：「%1」</translation>
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
        <translation>設定ファイルが壊れているため、既定値（読み取り専用）が有効になっています。次に変更すると、新しいファイルを作り、壊れたファイルのコピーを同じ場所に残します。</translation>
    </message>
    <message>
        <source>Somebody else may have written the settings file. It is set aside, and the defaults hold, which are read-only. Nothing can be saved until that is put right.</source>
        <translation>設定ファイルをほかの人が書き換えた可能性があります。このファイルは使わず、既定値（読み取り専用）が有効になっています。この問題が解決するまで保存できません。</translation>
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
