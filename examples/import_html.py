"""Makes a template of each HTML file in a folder: the file's name is the subject, the folder's name the category.

    python3 examples/import_html.py folder lorvane serve
"""

import pathlib
import sys

from lorvane_door import Door


def make_template(door, folder, subject, html, category):
    """A new mail in the templates folder. Created and moved, as the add-in itself does it."""
    draft = door.application.call("CreateItem", 0)
    draft.put("Subject", subject)
    draft.put("HTMLBody", html)
    draft.put("Categories", category)
    draft.call("Save")
    template = draft.call("Move", folder)
    draft.release()
    template.release()


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    source, command = pathlib.Path(sys.argv[1]), sys.argv[2:]
    files = sorted(source.glob("*.html"))
    with Door.start(command) as door:
        folder = door.globals.get("TemplatesFolder")
        for file in files:
            make_template(door, folder, file.stem, file.read_text(encoding="utf-8"), source.name)
    print(f"{len(files)} templates")


if __name__ == "__main__":
    main()
