"""Drives the chooser as a person would: a new mail, the caret in its body, the add-in's button in it, a template of the
chooser, and the text is read back.

    python3 examples/chooser.py "Quote (Sample)" lorvane --now 2028-01-10T09:00 serve
"""

import sys

from lorvane_door import Door


def insert(door, inspector, subject):
    """Clicks the add-in's button in this mail, chooses the template with this subject, and inserts it at the caret. False where there is none."""
    clicked = door.user.begin("ClickBar", inspector, "Lorvane/Lorvane")
    door.wait_for("shown", window="frmEmail")
    lines = door.forms.get("frmEmail").get("lstEmails")
    # A line is the subject, padded, and a key that is not for the eye.
    subjects = [lines.get("List", row)[:600].rstrip() for row in range(lines.get("ListCount"))]
    found = subject in subjects
    if found:
        door.user.call("Select", "frmEmail", "lstEmails", subjects.index(subject))
        door.user.call("Click", "frmEmail", "cmdInsert")
    else:
        door.user.call("CloseWindow", "frmEmail")
    clicked.result()
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
