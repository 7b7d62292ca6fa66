#include "crash/DoorActs.h"

#include <algorithm>
#include <optional>
#include <random>
#include <set>

#include "host/TextFunctions.h"
#include "respond/TextInsert.h"

namespace lorvane::crash {

namespace {

using mailstore::BodyKind;
using mailstore::test::PlacedItem;
using Object = DoorPlan::Object;

constexpr int actsOfARound = 5;
constexpr std::size_t manyItems = 30;

constexpr std::u16string_view drafts = u"\\Personal Folders\\Drafts", inbox = u"\\Personal Folders\\Inbox", bin = u"\\Personal Folders\\Deleted Items",
                              templates = u"\\Personal Folders\\Meravix Settings\\Lorvane";
constexpr std::u16string_view documentFront = u"<HTML><BODY>", documentBack = u"</BODY></HTML>";

std::u16string document(std::u16string_view text) {
    return std::u16string(documentFront).append(text).append(documentBack);
}

/// The place of the body that the caret has in front of the first visible letter.
std::size_t caretPlace(std::u16string_view body) {
    std::size_t place = documentFront.size();
    while (body.substr(place).starts_with(u'<') && !body.substr(place).starts_with(documentBack)) place = body.find(u'>', place) + 1;
    return place;
}

/// A template of `prepareStore`, and what becomes of it in a mail to Mary Major.
struct Choice {
    const char* button;
    int row;  ///< in the chooser's list, which is sorted: Edited, Follow-up (Sample), Letter, Plain and others
    std::u16string_view inserted;
    std::vector<std::string> files;
};
const Choice plainText{"cmdInsert", 3, u"Dear Mary", {}};
const Choice formattedLetter{"cmdInsertWithFormat", 2, u"<B>Dear</B> Mary, see <IMG SRC=\"picture.png\">", {"picture.png", "terms.txt"}};

/// A mail that the client holds.
struct Held {
    Object mail;
    PlacedItem now;                       ///< with what is not saved yet
    std::optional<std::size_t> number{};  ///< in the plan, once it is saved
    bool isChanged = false;
    std::optional<Object> files{};
};

class Session {
public:
    Session(const Program& program, DoorPlan& plan, std::uint32_t round) : program_(program), plan_(plan), round_(round), random_(round) {
        application_ = plan_.root("Application");
        user_ = plan_.root("User");
        forms_ = plan_.root("Forms");
        nameSpace_ = plan_.objectOf("call", application_, "GetNamespace", {"MAPI"});
        inbox_ = plan_.objectOf("call", nameSpace_, "GetDefaultFolder", {6});
        drafts_ = plan_.objectOf("call", nameSpace_, "GetDefaultFolder", {16});
        templates_ = plan_.objectOf("get", plan_.root("Globals"), "TemplatesFolder");
    }

    void act() {
        const std::uint32_t kind = below(10);
        const std::optional<std::size_t> known = someKnown();
        if (known && (plan_.items().size() > manyItems || kind < 3)) return useKnown(*known);
        if (kind < 6) return writeMail();
        insertIntoMail(known);
    }

private:
    std::uint32_t below(std::uint32_t count) { return static_cast<std::uint32_t>(random_() % count); }
    bool maybe(std::uint32_t of) { return below(of) == 0; }

    std::u16string freshText() {
        std::string text = "Round " + std::to_string(round_) + ", text " + std::to_string(++texts_) + " \xC3\xA9\xF0\x9D\x84\x9E";
        if (maybe(6)) text += std::string(2000 + below(20'000), 'x');
        return host::fromUtf8(text);
    }

    // What a request does, with its effect on what the client knows.

    void setSubject(Held& held) {
        held.now.record.head.subject = freshText().substr(0, 40);
        plan_.put(held.mail, "Subject", host::toUtf8(held.now.record.head.subject));
        held.isChanged = true;
    }

    void setText(Held& held) {
        const bool html = held.now.record.bodyKind == BodyKind::Html || (held.now.record.bodyKind == BodyKind::None && maybe(2));
        held.now.record.bodyKind = html ? BodyKind::Html : BodyKind::Plain;
        held.now.record.body = html ? document(freshText()) : freshText();
        plan_.put(held.mail, html ? "HTMLBody" : "Body", host::toUtf8(held.now.record.body));
        held.isChanged = true;
    }

    void attach(Held& held) {
        if (!held.files) held.files = plan_.objectOf("get", held.mail, "Attachments");
        const std::string name = "note " + std::to_string(round_) + " " + std::to_string(++texts_) + ".txt";
        const std::filesystem::path path = program_.file(name, std::string(1 + below(9000), static_cast<char>('a' + below(26))));
        plan_.objectOf("call", *held.files, "Add", {path.string()});
        held.now.record.attachments.push_back(fileOf(path));
        held.isChanged = true;
    }

    static mailstore::AttachmentRecord fileOf(const std::filesystem::path& path) {
        mailstore::AttachmentRecord file;
        file.fileName = host::fromUtf8(path.filename().string());
        file.data = std::make_shared<const host::Bytes>(mailstore::test::readBytes(path));
        return file;
    }

    void addMary(Held& held) {
        const Object recipients = plan_.objectOf("get", held.mail, "Recipients");
        plan_.objectOf("call", recipients, "Add", {"Mary Major <mary@example.com>"});
        plan_.call(recipients, "ResolveAll");
        held.now.record.recipients = {{u"Mary Major", u"mary@example.com", u"SMTP", host::olTo, true}};
        held.isChanged = true;
    }

    /// What the last request saves of it.
    void saves(Held& held) {
        if (held.number && !held.isChanged) return;
        if (held.number) {
            plan_.change(*held.number, held.now);
        } else {
            held.number = plan_.add(held.now);
        }
        held.isChanged = false;
    }

    void save(Held& held) {
        plan_.call(held.mail, "Save");
        saves(held);
    }

    /// What was not saved before is lost. The object is no more.
    void remove(const Held& held) {
        plan_.call(held.mail, "Delete");
        PlacedItem saved = plan_.items().at(*held.number);
        if (saved.folder == bin) return plan_.remove(*held.number);
        saved.folder = bin;
        plan_.change(*held.number, saved);
    }

    /// A saved item is saved where it is and goes then; a new one is saved where it comes to.
    void move(Held& held) {
        struct Target {
            Object folder;
            std::u16string_view path;
        };
        const Target targets[] = {{inbox_, inbox}, {drafts_, drafts}, {templates_, templates}};
        const Target& target = targets[below(3)];
        if (held.now.folder == target.path) return;
        const Object moved = plan_.objectOf("call", held.mail, "Move", {reference(target.folder)});
        if (held.number) saves(held);
        held.now.folder = target.path;
        held.isChanged = true;
        saves(held);
        held.mail = moved;
        held.files.reset();
    }

    void copy(Held& held) {
        plan_.objectOf("call", held.mail, "Copy");
        plan_.add(held.now);
    }

    // What a client does.

    void writeMail() {
        Held held{plan_.objectOf("call", application_, "CreateItem", {0}), {}};
        held.now.folder = drafts;
        setSubject(held);
        setText(held);
        if (maybe(3)) attach(held);
        if (!maybe(4)) save(held);
        goOn(held);
    }

    void useKnown(std::size_t number) {
        const PlacedItem& item = plan_.items().at(number);
        Held held{plan_.objectOf("call", nameSpace_, "GetItemFromID", {host::toUtf8(item.record.head.entryId)}), item, number};
        goOn(held);
    }

    /// Changes it, saves it or not, and does something else with it.
    void goOn(Held& held) {
        for (std::uint32_t changes = below(3); changes > 0; --changes) {
            if (maybe(2)) setSubject(held);
            if (maybe(2)) setText(held);
            if (maybe(4)) attach(held);
            if (!maybe(4)) save(held);
        }
        const std::uint32_t end = below(8);
        if (end < 3 || (held.number && plan_.items().size() > manyItems)) {
            if (!held.number) save(held);
            remove(held);
        } else if (end < 5) {
            move(held);
        } else if (end == 5) {
            copy(held);
        }
    }

    /// One of the beginning that this session did not have yet.
    std::optional<std::size_t> someKnown() {
        std::vector<std::size_t> numbers;
        for (const auto& [number, item] : plan_.items())
            if (item.record.head.subject.starts_with(u"Round ") && !item.record.head.entryId.empty() && plan_.isUntouched(number) && !used_.contains(number))
                numbers.push_back(number);
        if (numbers.empty()) return std::nullopt;
        const std::size_t number = numbers[below(static_cast<std::uint32_t>(numbers.size()))];
        used_.insert(number);
        return number;
    }

    void insertIntoMail(const std::optional<std::size_t>& known) {
        Object window;
        Held held;
        if (known && isFitForInsertion(plan_.items().at(*known))) {
            held.now = plan_.items().at(*known);
            held.number = known;
            window = plan_.objectOf("call", user_, "OpenItem", {host::toUtf8(held.now.record.head.entryId)});
            held.mail = plan_.objectOf("get", window, "CurrentItem");
        } else {
            window = plan_.objectOf("call", user_, "NewMail");
            held.mail = plan_.objectOf("get", window, "CurrentItem");
            held.now.folder = drafts;
            held.now.record.bodyKind = BodyKind::Html;
            held.now.record.body = document(u"");
            setSubject(held);
            if (maybe(3)) save(held);
        }
        if (held.now.record.recipients.empty()) addMary(held);
        plan_.call(user_, "Focus", {reference(window), "Body", 0});
        const bool hasLetter = std::ranges::any_of(held.now.record.attachments, [](const auto& file) { return !file.fileName.starts_with(u"note "); });
        choose(held, window, hasLetter || maybe(3) ? plainText : formattedLetter);
        closeWindow(held, window);
    }

    static bool isFitForInsertion(const PlacedItem& item) { return item.folder == drafts && item.record.body.starts_with(documentFront); }

    /// Opens the chooser over the window, chooses and inserts at the caret, in front of the text.
    void choose(Held& held, Object window, const Choice& choice) {
        if (maybe(2)) {
            plan_.call(user_, "ClickBar", {reference(window), "Lorvane/Lorvane"});
        } else {
            const Object chooser = plan_.objectOf("get", forms_, "frmEmail");
            plan_.call(chooser, "Show", {1});
        }
        if (maybe(6)) return plan_.call(user_, "CloseWindow", {"frmEmail"});
        plan_.call(user_, "Select", {"frmEmail", "lstEmails", choice.row});
        plan_.call(user_, "Click", {"frmEmail", choice.button});
        const std::u16string body = held.now.record.body;
        saves(held);
        const auto withAtCaret = [&](std::u16string_view text) { return std::u16string(body).insert(caretPlace(body), text); };
        if (!choice.files.empty()) {
            held.now.record.body = withAtCaret(respond::caretMarker);
            held.isChanged = true;
            saves(held);
        }
        for (const std::string& file : choice.files) {
            held.now.record.attachments.push_back(fileOf(program_.folder() / file));
            held.isChanged = true;
            saves(held);
        }
        held.now.record.body = withAtCaret(choice.inserted);
        held.isChanged = true;
        saves(held);
    }

    void closeWindow(Held& held, Object window) {
        const std::uint32_t end = below(4);
        if (end == 0) return;  // it stays open
        if (end == 1) save(held);
        plan_.call(user_, "CloseInspector", {reference(window), true});
        saves(held);
    }

    const Program& program_;
    DoorPlan& plan_;
    const std::uint32_t round_;
    std::mt19937 random_;
    Object application_, user_, forms_, nameSpace_, inbox_, drafts_, templates_;
    std::set<std::size_t> used_;
    int texts_ = 0;
};

}  // namespace

DoorPlan planOfRound(const Program& program, const Items& before, std::uint32_t round) {
    DoorPlan plan(before);
    Session session(program, plan, round);
    for (int act = 0; act < actsOfARound; ++act) session.act();
    return plan;
}

}  // namespace lorvane::crash
