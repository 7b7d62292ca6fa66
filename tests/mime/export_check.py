"""Reads messages with the standard library and compares them with what they should hold.

Usage: export_check.py FILE.eml... Each FILE.eml has a FILE.eml.expected beside it: one value a line, its name first, the rest in hexadecimal UTF-8 or bytes
("-" is empty). Prints every difference; exit status 1 where there is one.
"""

import email
import email.policy
import sys


def unhex(word):
    return b"" if word == "-" else bytes.fromhex(word)


def expected(path):
    with open(path, encoding="ascii") as file:
        return [[words[0]] + [unhex(word) for word in words[1:]] for words in (line.split() for line in file)]


def text(value):
    return str(value).encode("utf-8", "surrogatepass")


def mailboxes(message, name):
    field = message[name]
    addresses = field.addresses if field else ()
    return [[name.lower(), text(a.display_name or a.addr_spec), text(a.addr_spec)] for a in addresses]


def attachments(message):
    bodies = [message.get_body((kind,)) for kind in ("plain", "html")]
    for part in message.walk():
        is_body = any(part is body for body in bodies) or part.get_content_type() == "text/rtf"
        if part.is_multipart() or is_body:
            continue
        yield [
            "attachment",
            text(part.get_filename()),
            text(part.get_content_type()),
            text((part["Content-ID"] or "").strip("<>")),
            b"inline" if part.get_content_disposition() == "inline" else b"attachment",
            part.get_payload(decode=True) or b"",
        ]


def found(path):
    with open(path, "rb") as file:
        # From bytes: reading from a file would turn every CRLF into LF.
        message = email.message_from_bytes(file.read(), policy=email.policy.default)
    values = [["defect", text(type(defect).__name__)] for part in message.walk() for defect in part.defects]
    values += [["subject", text(message["Subject"] or "")], ["unsent", text(message["X-Unsent"] or "")]]
    values += [["date", text(message["Date"].datetime.isoformat())]]
    for name in ("From", "To", "Cc", "Bcc"):
        values += mailboxes(message, name)
    for kind in ("plain", "html"):
        part = message.get_body((kind,))
        if part:
            values.append([kind, text(part.get_content())])
    return values + list(attachments(message))


def main(paths):
    status = 0
    for path in paths:
        for want, have in zip_all(expected(path + ".expected"), found(path)):
            if want != have:
                print(f"{path}: expected {want}, found {have}")
                status = 1
    return status


def zip_all(a, b):
    length = max(len(a), len(b))
    return zip(a + [None] * (length - len(a)), b + [None] * (length - len(b)))


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
