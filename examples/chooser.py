"""Drives the chooser as a person would: a new mail, the caret in its body, the chooser over it, a click, and the text is read back.

    python3 examples/chooser.py "Quote (Sample)" lorvane --now 2028-01-10T09:00 serve
"""

import sys

from lorvane_door import Door


def insert(door, inspector, subject):
    """Chooses the template with this subject in the chooser, over the Inspector in front, and inserts it. False where there is none."""
    chooser = door.forms.get("frmEmail")
    showing = chooser.begin("Show", True)
    door.wait_for("shown", window="frmEmail")
    lines = chooser.get("lstEmails")
    # A line is the subject, padded, and a key that is not for the eye.
    subjects = [lines.get("List", row)[:600].rstrip() for row in range(lines.get("ListCount"))]
    found = subject in subjects
    if found:
        door.user.call("Select", "frmEmail", "lstEmails", subjects.index(subject))
        door.user.call("Click", "frmEmail", "cmdInsert")
    else:
        door.user.call("CloseWindow", "frmEmail")
    showing.result()
    return found


def new_mail(door, to):
    """The Inspector of a new mail to this person, with the caret at the start of its body."""
    inspector = door.user.call("NewMail")
    recipients = inspector.get("CurrentItem").get("Recipients")
    recipients.call("Add", to)
    recipients.call("ResolveAll")
    door.user.call("Focus", inspector, "Body", 0)
    return inspector


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    subject, command = sys.argv[1], sys.argv[2:]
    with Door.start(command) as door:
        inspector = new_mail(door, "John Public <john@example.com>")
        if not insert(door, inspector, subject):
            sys.exit(f"there is no template {subject!r}")
        print(inspector.get("CurrentItem").get("Body"))


if __name__ == "__main__":
    main()
