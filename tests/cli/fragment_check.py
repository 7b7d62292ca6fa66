"""fragment_check.py SOURCE MESSAGE [TAG VALUE]...: is the body fragment of an HTML file, its tags replaced, one run of the HTML part of a message?

Read with the standard library's own mail reader. Prints what is wrong; nothing where all is well.
"""

import email
import email.policy
import re
import sys


def fragment(path, tags):
    with open(path, encoding="utf-8", newline="") as file:
        source = file.read().replace("\r\n", "\n").replace("\n", "\r\n")
    body = re.search(r"<body[^>]*>(.*)</body>", source, re.IGNORECASE | re.DOTALL)
    text = body.group(1)
    for tag, value in tags:
        text = text.replace(tag, value)
    return text


def main(source, message_path, *tags):
    with open(message_path, "rb") as file:
        message = email.message_from_bytes(file.read(), policy=email.policy.default)
    html = [part for part in message.walk() if part.get_content_type() == "text/html"]
    if len(html) != 1:
        return f"there are {len(html)} HTML parts"
    text = html[0].get_payload(decode=True).decode("utf-8")
    wanted = fragment(source, list(zip(tags[::2], tags[1::2])))
    if len(wanted.strip()) < 500:
        return "the fragment is too short to prove anything"
    if text.count(wanted) != 1:
        return f"the fragment stands {text.count(wanted)} times in the HTML part"
    return None


if __name__ == "__main__":
    problem = main(*sys.argv[1:])
    if problem:
        print(problem)
