"""Takes a received mail in, and puts a template into the mail that answers it.

    python3 examples/answer_received.py received.eml "Thanks" lorvane --now 2028-01-10T09:00 serve

Items of the mail host have no `Reply` yet, so the answer is a new mail to the sender, with the sender's subject.
"""

import sys

from chooser import insert
from lorvane_door import Door


def answer(door, received):
    """The Inspector of a mail to the sender, with the caret at the start of its body."""
    inspector = door.user.call("NewMail")
    mail = inspector.get("CurrentItem")
    mail.put("Subject", "RE: " + received.get("Subject"))
    recipients = mail.get("Recipients")
    recipients.call("Add", received.get("SenderName"))
    recipients.call("ResolveAll")
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
        inspector = answer(door, received)
        if not insert(door, inspector, subject):
            sys.exit(f"there is no template {subject!r}")
        mail = inspector.get("CurrentItem")
        print("To:", mail.get("To"))
        print("Subject:", mail.get("Subject"))
        print()
        print(mail.get("Body"))


if __name__ == "__main__":
    main()
