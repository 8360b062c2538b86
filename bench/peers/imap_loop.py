"""The search as a script with Python's own libraries: imaplib, and email for the messages. For each line "go" it
opens a session, fetches the newest messages one after the other, and prints them on one line.

    python3 imap_loop.py PORT CA_FILE USER PASSWORD LIMIT
"""
import email
import email.policy
import imaplib
import json
import ssl
import sys


def search(port, ca_file, user, password, limit):
    context = ssl.create_default_context(cafile=ca_file)
    connection = imaplib.IMAP4_SSL("localhost", port, ssl_context=context)
    connection.login(user, password)
    connection.select("INBOX", readonly=True)
    uids = connection.uid("SEARCH", "ALL")[1][0].split()
    messages = []
    for uid in reversed(uids[-limit:]):
        (head, source), *_ = connection.uid("FETCH", uid, "(FLAGS INTERNALDATE BODY.PEEK[])")[1]
        message = email.message_from_bytes(source, policy=email.policy.default)
        part = message.get_body(("plain", "html"))
        text = part.get_content() if part is not None else ""
        messages.append({
            "uid": int(uid),
            "subject": message["subject"],
            "from": message["from"],
            "to": message["to"],
            "date": message["date"],
            "seen": b"\\Seen" in head,
            "snippet": " ".join(text.split())[:200],
        })
    connection.logout()
    return json.dumps({"count": len(messages), "limit": limit, "messages": messages}, default=str)


def main():
    port, ca_file, user, password, limit = sys.argv[1:]
    for _ in sys.stdin:
        print(search(int(port), ca_file, user, password, int(limit)), flush=True)


main()
