"""A mailbox for measurements, the same in every run. It has two messages with a very large text, and then ordinary
mail of several kinds. No message looks like security mail."""
import base64
import os
import quopri

ORDINARY = 200
BODY_BYTES = 25_000_000

WORDS = ("the quarterly figures for our garden arrived this morning and everybody who has seen them would like "
         "to talk about the greenhouse before spring because glass has become rather dear").split()
JAPANESE = "来週の会議の資料をお送りします。ご確認のうえ、ご意見をお聞かせください。"


def prose(number, length):
    """At least `length` characters of text, in lines of at most 72 columns."""
    text, line, step = [], "", number
    while sum(map(len, text)) + len(line) < length:
        step = (step * 31 + 7) % 10007
        word = WORDS[step % len(WORDS)]
        if len(line) + 1 + len(word) > 72:
            text.append(line + "\n")
            line = word
        else:
            line = f"{line} {word}".strip()
    return "".join(text) + line + "\n"


def base64_lines(data):
    return base64.encodebytes(data).decode()


def newsletter(number):
    cells = "".join(
        f'<tr><td style="padding:12px;font-family:Arial,sans-serif"><a href="https://example.org/{number}/{i}">'
        f"<b>Offer {i}</b></a><br>{prose(number + i, 240)}&nbsp;&mdash; only &euro;&thinsp;{i}.99</td></tr>\n"
        for i in range(60))
    page = (f"<html><head><title>Offers</title><style>td {{ color: #333 }} a {{ color: #06c }}</style></head>"
            f"<body><table>{cells}</table></body></html>\n")
    return page.encode()


def parts(number):
    """The body's header fields and the body of the message with this number."""
    kind = number % 5
    if kind == 0:
        return "Content-Type: text/plain; charset=us-ascii\n", prose(number, 1500)
    if kind == 1:
        body = quopri.encodestring(newsletter(number)).decode()
        return ("Content-Type: text/html; charset=utf-8\nContent-Transfer-Encoding: quoted-printable\n", body)
    if kind == 2:
        return ("Content-Type: text/plain; charset=utf-8\nContent-Transfer-Encoding: base64\n",
                base64_lines((JAPANESE * 40 + "\n").encode()))
    if kind == 3:
        return ('Content-Type: multipart/alternative; boundary="half"\n',
                "--half\nContent-Type: text/plain; charset=utf-8\nContent-Transfer-Encoding: 8bit\n\n"
                + prose(number, 2500) + "\n--half\nContent-Type: text/html; charset=utf-8\n"
                "Content-Transfer-Encoding: quoted-printable\n\n"
                + quopri.encodestring(newsletter(number)).decode() + "\n--half--\n")
    return ('Content-Type: multipart/mixed; boundary="whole"\n',
            "--whole\nContent-Type: text/plain; charset=iso-8859-1\n\n" + prose(number, 800)
            + '\n--whole\nContent-Type: application/pdf; name="plan.pdf"\n'
            'Content-Disposition: attachment; filename="plan.pdf"\nContent-Transfer-Encoding: base64\n\n'
            + base64_lines(bytes(range(256)) * 120) + "\n--whole--\n")


def ordinary(number):
    subject = f"Figures of week {number}"
    if number % 5 == 2:
        subject = "=?UTF-8?B?" + base64.b64encode("会議の資料".encode()).decode() + "?="
    header, body = parts(number)
    return (f"Date: Mon, 04 Mar 2024 {number // 60 % 24:02}:{number % 60:02}:00 +0000\n"
            f"From: Colleague {number} <colleague{number}@example.org>\nTo: user@example.org\n"
            f"Subject: {subject}\nMessage-ID: <week-{number}@example.org>\nMIME-Version: 1.0\n"
            f"{header}\n{body}").encode()


def large(is_base64):
    lines = (prose(1, 10_000) + JAPANESE + "\n").encode()
    text = (lines * (BODY_BYTES // len(lines) + 1))[:BODY_BYTES]
    text = text[:text.rfind(b"\n") + 1]
    encoding, body = ("base64", base64.encodebytes(text)) if is_base64 else ("8bit", text)
    return (b"Date: Fri, 01 Mar 2024 00:00:00 +0000\nFrom: Archive <archive@example.org>\nTo: user@example.org\n"
            b"Subject: The whole record\nMessage-ID: <record@example.org>\nMIME-Version: 1.0\n"
            b"Content-Type: text/plain; charset=utf-8\nContent-Transfer-Encoding: " + encoding.encode()
            + b"\n\n" + body)


# The messages in the order of their UIDs, which begin at 1.
LARGE_8BIT, LARGE_BASE64 = 1, 2


def make(maildir):
    for folder in ("cur", "new", "tmp"):
        os.makedirs(f"{maildir}/{folder}", exist_ok=True)
    messages = [large(False), large(True)] + [ordinary(number) for number in range(ORDINARY)]
    for index, message in enumerate(messages):
        path = f"{maildir}/cur/{1_709_251_200 + index}.{index:04}.bench:2,S"
        with open(path, "wb") as file:
            file.write(message)
        os.utime(path, (1_709_251_200 + index * 60,) * 2)
