"""Takes a received mail in, replies to it, and puts a template above the quoted text.

    python3 examples/answer_received.py received.eml "Thanks" lorvane --now 2028-01-10T09:00 serve
"""

import sys

from chooser import insert
from lorvane_door import Door


def reply(door, received):
    """The Inspector of a reply to a received mail, with the caret at the start of its body."""
    mail = received.call("Reply")
    mail.call("Display")
    inspector = mail.get("GetInspector")
    door.user.call("Focus", inspector, "Body", 0)
    return inspector


def main():
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    file, subject, command = sys.argv[1], sys.argv[2], sys.argv[3:]
    with open(file, "rb") as stream:
        message = stream.read()
    with Door.start(command) as door:
        received = door.user.call("Receive", message)
        inspector = reply(door, received)
        if not insert(door, inspector, subject):
            sys.exit(f"there is no template {subject!r}")
        mail = inspector.get("CurrentItem")
        print("To:", mail.get("To"))
        print("Subject:", mail.get("Subject"))
        print()
        print(mail.get("Body"))


if __name__ == "__main__":
    main()
