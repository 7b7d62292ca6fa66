"""draft_check.py TEXT (BEFORE AFTER)...: did drafts keep all they had while their bodies took a text?

Every header field stays with its value and in its order, and every part but the texts of the body keeps its own fields and its encoded content. (Fields that
describe a content go with it: a mail that was one attachment gets a part for it.) Read with the standard library's own mail reader. Prints what is wrong; nothing
where all is well.
"""

import email
import sys


def leaves(message):
    """The parts without parts, those of an embedded message included."""
    return [part for part in message.walk() if not part.is_multipart()]


def of_content(name):
    return name.lower().startswith("content-") or name.lower() == "lines"


def fields(part, content):
    return [(name, str(value)) for name, value in part.raw_items() if of_content(name) == content]


def is_body(part):
    """A multipart that is said to be one and is none is read as text."""
    if part.get_content_maintype() == "multipart":
        return True
    return part.get_content_maintype() == "text" and part.get_filename() is None and part.get_content_disposition() != "attachment"


def kept_in_order(before, after):
    lost, at = [], 0
    for field in before:
        if field in after[at:]:
            at = after.index(field, at) + 1
        else:
            lost.append(field)
    return lost


def same(a, b):
    return fields(a, True) == fields(b, True) and a.get_payload() == b.get_payload()


def problems_of(before_path, after_path, text):
    with open(before_path, "rb") as file:
        before = email.message_from_bytes(file.read())
    with open(after_path, "rb") as file:
        after = email.message_from_bytes(file.read())
    problems = []
    lost = kept_in_order(fields(before, False), fields(after, False))
    if lost:
        problems.append(f"fields lost, changed or moved: {lost}")
    remaining = leaves(after)
    for part in leaves(before):
        twin = next((other for other in remaining if same(part, other)), None)
        if twin is not None:
            remaining.remove(twin)
        elif not is_body(part):
            problems.append(f"a {part.get_content_type()} part ({part.get_filename()}) is not what it was")
    for part in remaining:
        if not is_body(part):
            problems.append(f"a {part.get_content_type()} part ({part.get_filename()}) came from nowhere")
    taken = [part for part in remaining if text.encode() in (part.get_payload(decode=True) or b"")]
    if not taken:
        problems.append("no text of the body holds what was inserted")
    if len(taken) != len(remaining):
        problems.append("a text of the body was changed without taking what was inserted")
    return problems


if __name__ == "__main__":
    for before, after in zip(sys.argv[2::2], sys.argv[3::2]):
        for problem in problems_of(before, after, sys.argv[1]):
            print(f"{after}: {problem}")
