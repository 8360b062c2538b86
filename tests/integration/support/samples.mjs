// How the sample mailbox (tests/fixtures/mailbox) must appear through the tools, by the number of the mail.
const signal = (category, term, location) => ({ category, term, location });

export const withheld = '[withheld: sensitive]';

export const samples = [
  { number: 1, subject: 'Lunch on Thursday?', from: 'Alice Example <alice@example.org>', seen: true,
    date: 'Mon, 04 Mar 2024 09:12:45 +0000', messageId: '<lunch-1@example.org>',
    snippet: ['Hi, are you free for lunch on Thursday? The little place'] },
  { number: 2, subject: 'The new ferry timetable', from: 'Harbour Gazette <gazette@news.example.com>',
    seen: true, snippet: ['starts on Sunday. First boat: 6:10.', 'Library & archive'] },
  { number: 3, subject: '会議の日程変更について', from: '田中一郎 <tanaka@example.net>',
    snippet: ['水曜日の午後二時から'] },
  { number: 4, subject: '①お見積書の件', from: '髙橋花子 <takahashi@example.net>',
    snippet: ['髙橋です。', '①お見積書 ②納期表', '㈱サンプル', 'ﾊﾝｶｸｶﾅ'] },
  { number: 5, subject: 'Rental agreement for signature', attachments: true,
    from: 'Benoit, Claire <claire.benoit@example.com>', snippet: ['Rue Saint-Honoré'] },
  { number: 6, subject: 'Receipt for your order 20240309-17', seen: true,
    from: 'Bicycle Workshop <orders@shop.example.com>', snippet: ['Total paid 37.40 EUR'] },
  { number: 7, subject: 'Your verification code', from: 'Example Bank <no-reply@bank.example.com>',
    signals: [signal('verification_code', 'verification code', 'subject')], secret: '493817' },
  { number: 8, subject: 'Reset your password', from: 'Example Forum <accounts@forum.example.net>',
    signals: [signal('password_reset', 'reset your password', 'subject')], secret: 'Zk3vQ9xT71' },
  // The keyword is broken over two lines. It appears only in the collapsed text of the snippet.
  { number: 9, subject: 'Welcome back', from: 'Example Library <desk@library.example.org>',
    signals: [signal('login_code', 'sign-in code', 'body')], secret: '602284' },
  { number: 10, subject: '認証コードのお知らせ', from: 'Exampleショップ <no-reply@shop.example.net>',
    signals: [signal('verification_code', '認証コード', 'subject')], secret: '771934' },
  { number: 11, subject: 'Invitation: Roof inspection, 21 March', from: 'Diego Marin <diego@example.com>',
    snippet: ['Diego Marin invites you'] },
  { number: 12, subject: 'Fwd: Boat number 12', from: 'Alice Example <alice@example.org>', seen: true,
    snippet: ['This came to me by mistake'] },
  // "Hotpot" contains "otp", but not as a word.
  { number: 13, subject: 'Hotpot night 🍲', from: 'Zoë <zoe@example.org>',
    snippet: ['Hotpot night is on! 🍲🔥', '👨‍👩‍👧‍👦'] },
  { number: 14, subject: 'Scan 0042', from: 'scanner@example.org', attachments: true, snippet: [] },
  { number: 15, subject: 'Déjeuner à Genève', from: 'François Müller <francois@example.com>',
    snippet: ['Café Méridien à Genève', '22 août'] },
  { number: 16, subject: 'Your parcel is waiting', from: 'Example Parcel <parcels@parcel.example.com>',
    signals: [signal('security_code', 'security code', 'body')], secret: '118260' },
];

export const secrets = samples.flatMap((sample) => sample.secret ?? []);

export const toolNames = ['get_status', 'list_folders', 'search_inbox', 'get_message_summary',
  'get_message_body', 'propose_inbox_cleanup', 'move_message', 'mark_as_read', 'trash_message'];

export const folders = [
  { path: 'INBOX', name: 'INBOX', specialUse: null },
  { path: 'Trash', name: 'Trash', specialUse: '\\Trash' },
  { path: 'Archive', name: 'Archive', specialUse: '\\Archive' },
  { path: 'Archive/2023', name: '2023', specialUse: null },
  { path: 'Sent Messages', name: 'Sent Messages', specialUse: '\\Sent' },
  { path: 'Junk', name: 'Junk', specialUse: '\\Junk' },
  { path: 'Drafts', name: 'Drafts', specialUse: '\\Drafts' },
  { path: 'Quotes "and" spaces', name: 'Quotes "and" spaces', specialUse: null },
  // The path as the server spells it, in modified UTF-7 (RFC 3501 section 5.1.3).
  { path: '&MNcw7TC4MKcwrzDI-', name: 'プロジェクト', specialUse: null },
].map((folder) => ({ ...folder, delimiter: '/', selectable: true }));
