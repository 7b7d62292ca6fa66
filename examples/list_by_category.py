"""Lists the templates of the private folder by category.

    python3 examples/list_by_category.py lorvane serve
"""

import sys

from lorvane_door import Door


def templates(door):
    """Subject and categories of each template, read from the folder that the add-in uses."""
    items = door.globals.get("TemplatesFolder").get("Items")
    for place in range(1, items.get("Count") + 1):
        item = items.call("Item", place)
        yield item.get("Subject"), [name.strip() for name in item.get("Categories").split(",") if name.strip()]
        item.release()


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    by_category = {}
    with Door.start(sys.argv[1:]) as door:
        for subject, categories in templates(door):
            for category in categories or ["(none)"]:
                by_category.setdefault(category, []).append(subject)
    for category in sorted(by_category):
        print(category)
        for subject in sorted(by_category[category]):
            print("  " + subject)


if __name__ == "__main__":
    main()
