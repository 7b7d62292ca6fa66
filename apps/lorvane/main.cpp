#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <functional>

#include "Commands.h"
#include "Streams.h"
#include "host/BuildSwitches.h"
#include "host/HostError.h"
#include "host/TextFunctions.h"

namespace {

using namespace lorvane;
using namespace lorvane::cli;

using Command = std::function<ExitStatus()>;

/// One value each time the option is given; without this the parser would also take the words behind it, and brackets for a list.
void manyTimes(CLI::Option* option) {
    option->expected(1)->take_all()->allow_extra_args(false);
}

/// An empty word, as an unset variable of a script leaves it, is not taken for an option that was left out.
std::string emptyWord(const std::string& word) {
    return word.empty() ? "it is empty" : "";
}

void addRunOptions(CLI::App& app, RunOptions& run) {
    app.add_option("--store", run.store, "Folder of the store (default: lorvane in the user's data folder)")->type_name("DIR")->check(emptyWord);
    app.add_option("--host-version", run.hostVersion, "Version of the mail host: 9, 10, 11, or dotted as 10.0.0.6515")->type_name("V");
    app.add_option("--editor", run.editor, "Editor of new mails, or word for all mails")->check(CLI::IsMember({"plain", "html", "rich", "word"}));
    app.add_option("--now", run.now, "Moment at which date and time stand, as 2028-01-10T09:00")->type_name("ISO-TIME")->check(emptyWord);
    app.add_option("--locale", run.locale, "How dates are written, as en-US, en-GB, de-DE")->type_name("NAME")->check(emptyWord);
    app.add_option("--from", run.from, "The account's name and address")->type_name("\"NAME <ADDRESS>\"")->check(emptyWord);
    app.add_flag("--no-explorer", run.noExplorer, "Start the host without a window");
    app.add_option_function<std::string>(
           "--answer", [&run](const std::string& answer) { run.answerYes = answer == "yes"; }, "Answer questions so (default: no)")
        ->check(CLI::IsMember({"yes", "no"}));
    app.add_option("--log", run.log, "Write the log of host calls into this file")->type_name("FILE")->check(emptyWord);
}

void addId(CLI::App& sub, TemplateName& name) {
    sub.add_option("--id", name.id, "Its EntryID, where several have the subject")->type_name("ENTRYID")->check(emptyWord);
}

/// The template that a command is about, as its first word.
void addName(CLI::App& sub, TemplateName& name) {
    sub.add_option("subject", name.subject, "Subject of the template, exactly")->required()->type_name("SUBJECT");
    addId(sub, name);
}

void addInsert(CLI::App& app, const RunOptions& run, Command& command) {
    auto* sub = app.add_subcommand("insert", "Insert a template into a new or given mail, at the caret");
    auto options = std::make_shared<InsertOptions>();
    sub->add_option("--template", options->name.subject, "Subject of the template, exactly")->required()->type_name("SUBJECT");
    addId(*sub, options->name);
    sub->add_flag("--with-format", options->withFormat, "With formatting, instead of text only");
    manyTimes(sub->add_option("--to", options->to, "Recipient of the new mail; may be repeated")->type_name("\"NAME <ADDRESS>\""));
    sub->add_option("--into", options->into, "Insert into this message (a draft: X-Unsent: 1); - is standard input")->type_name("FILE.eml")->check(emptyWord);
    sub->add_option("--caret", options->caret, "Where the caret stands: body, body:N (-1 is the end), or subject")->type_name("PLACE");
    sub->add_option("--out", options->out, "Write the message here instead of to standard output")->type_name("FILE")->check(emptyWord);
    sub->add_flag("--keep", options->keep, "Leave the mail in the store's Drafts");
    sub->footer("Example: lorvane insert --template \"Quote (Sample)\" --to \"John Public <john@example.com>\"");
    sub->callback([&run, &command, options] { command = [&run, options] { return runInsert(run, *options); }; });
}

void addTemplates(CLI::App& app, const RunOptions& run, Command& command) {
    auto* sub = app.add_subcommand("templates", "List templates as the chooser does");
    auto options = std::make_shared<TemplatesOptions>();
    sub->add_option("--search", options->search, "Only subjects that hold this text, in any case")->type_name("TEXT");
    sub->add_option("--category", options->category, "Only templates of this category")->type_name("NAME");
    sub->add_option("--scope", options->scope, "Which folders to list")->check(CLI::IsMember({"all", "private", "shared"}));
    sub->add_flag("--json", options->json, "A JSON array of objects: subject, categories, entryID, storeID");
    sub->footer("Example: lorvane templates --search quote --json");
    sub->callback([&run, &command, options] { command = [&run, options] { return runTemplates(run, *options); }; });
}

/// Gives the group of what a template's text may come from.
CLI::App* addContent(CLI::App& sub, TemplateContent& content) {
    sub.add_option("--subject", content.subject, "Its subject")->type_name("SUBJECT");
    sub.add_option("--category", content.categories, "Its categories, separated by commas")->type_name("\"A, B\"");
    auto* source = sub.add_option_group("source", "What it holds (one of them)");
    source->add_option("--text", content.text, "Plain text, UTF-8; - is standard input")->type_name("FILE")->check(emptyWord);
    source->add_option("--html", content.html, "HTML, UTF-8; - is standard input")->type_name("FILE")->check(emptyWord);
    source->add_option("--eml", content.eml, "A message with its attachments; - is standard input")->type_name("FILE")->check(emptyWord);
    manyTimes(sub.add_option("--attach", content.attach, "Attach this file; may be repeated")->type_name("FILE")->check(emptyWord));
    return source;
}

void addTemplateAdd(CLI::App& group, const RunOptions& run, Command& command) {
    auto* sub = group.add_subcommand("add", "Add a template to the private folder");
    auto content = std::make_shared<TemplateContent>();
    addContent(*sub, *content)->require_option(1);
    sub->footer("Example: lorvane template add --subject Thanks --category \"Sales, Support\" --text thanks.txt");
    sub->callback([&run, &command, content] {
        if (!content->subject && content->eml.empty()) throw CLI::RequiredError("--subject");
        command = [&run, content] { return runTemplateAdd(run, *content); };
    });
}

void addTemplateShow(CLI::App& group, const RunOptions& run, Command& command) {
    auto* sub = group.add_subcommand("show", "Print a template's subject and text as the chooser previews them");
    auto options = std::make_shared<TemplateShowOptions>();
    addName(*sub, options->name);
    sub->add_flag("--json", options->json, "A JSON object: subject, text, categories, kind, attachments, entryID, storeID");
    sub->footer("Example: lorvane template show \"Quote (Sample)\"");
    sub->callback([&run, &command, options] { command = [&run, options] { return runTemplateShow(run, *options); }; });
}

void addTemplateEdit(CLI::App& group, const RunOptions& run, Command& command) {
    auto* sub = group.add_subcommand("edit", "Change what a template holds; what is not told stays");
    auto options = std::make_shared<TemplateEditOptions>();
    addName(*sub, options->name);
    addContent(*sub, options->content)->require_option(0, 1);
    sub->footer("Example: lorvane template edit Thanks --category Support --text thanks.txt");
    sub->callback([&run, &command, options] {
        const TemplateContent& content = options->content;
        const bool withText = !content.text.empty() || !content.html.empty() || !content.eml.empty();
        if (!content.subject && !content.categories && !withText && content.attach.empty())
            throw CLI::RequiredError("One of --subject, --category, --text, --html, --eml, --attach");
        command = [&run, options] { return runTemplateEdit(run, *options); };
    });
}

void addTemplateDelete(CLI::App& group, const RunOptions& run, Command& command) {
    auto* sub = group.add_subcommand("delete", "Delete a template, without asking");
    auto name = std::make_shared<TemplateName>();
    addName(*sub, *name);
    sub->footer("Example: lorvane template delete Thanks");
    sub->callback([&run, &command, name] { command = [&run, name] { return runTemplateDelete(run, *name); }; });
}

void addTemplate(CLI::App& app, const RunOptions& run, Command& command) {
    auto* group = app.add_subcommand("template", "Make and keep templates");
    group->require_subcommand(1);
    for (const auto add : {addTemplateAdd, addTemplateShow, addTemplateEdit, addTemplateDelete}) add(*group, run, command);
}

void addImport(CLI::App& app, const RunOptions& run, Command& command) {
    auto* sub = app.add_subcommand("import", "Take messages (.eml, mbox) over as templates");
    auto options = std::make_shared<ImportOptions>();
    sub->add_option("--folder", options->folder, "Into this folder instead of the private templates folder, as \\Store\\Folder")
        ->type_name("PATH")
        ->check(emptyWord);
    sub->add_option("source", options->sources, "Message or mailbox files, or folders of them; - is standard input")->required()->type_name("FILE|DIR");
    sub->footer("Example: lorvane import templates/ welcome.eml");
    sub->callback([&run, &command, options] { command = [&run, options] { return runImport(run, *options); }; });
}

void addStore(CLI::App& app, const RunOptions& run, Command& command) {
    auto* group = app.add_subcommand("store", "Look after the store");
    group->require_subcommand(1);
    auto options = std::make_shared<StoreOptions>();
    const auto realFile = [](const std::string& word) { return word.empty() ? "it is empty" : word == "-" ? "it must be a file" : ""; };
    auto* check = group->add_subcommand("check", "Read a whole store and tell what is wrong with it; nothing is written");
    check->add_option("file", options->file, "The store's file, or its folder (default: the store of --store)")->type_name("FILE")->check(realFile);
    check->footer("Example: lorvane store check");
    check->callback([&run, &command, options] { command = [&run, options] { return runStoreCheck(run, *options); }; });
    auto* backup = group->add_subcommand("backup", "Copy the store into a new file, also while it is in use");
    backup->add_option("file", options->file, "The copy")->required()->type_name("FILE")->check(realFile);
    backup->footer("Example: lorvane store backup lorvane-2028-01-10.sqlite");
    backup->callback([&run, &command, options] { command = [&run, options] { return runStoreBackup(run, *options); }; });
}

void addSettings(CLI::App& app, const RunOptions& run, Command& command) {
    auto* group = app.add_subcommand("settings", "Read and write the settings");
    group->require_subcommand(1);
    auto options = std::make_shared<SettingsOptions>();
    auto* get = group->add_subcommand("get", "Print the value of a key; status 1 where it was never written");
    get->add_option("key", options->key)->required();
    get->footer("Example: lorvane settings get SharedTemplates");
    get->callback([&run, &command, options] { command = [&run, options] { return runSettingsGet(run, *options); }; });
    auto* set = group->add_subcommand("set", "Write the value of a key");
    set->add_option("key", options->key)->required();
    set->add_option("value", options->value)->required();
    set->footer("Example: lorvane settings set LogTemplate True");
    set->callback([&run, &command, options] { command = [&run, options] { return runSettingsSet(run, *options); }; });
    auto* list = group->add_subcommand("list", "Print every key that was written");
    list->add_flag("--json", options->json, "A JSON array of objects: application, section, key, value");
    list->footer("Example: lorvane settings list --json");
    list->callback([&run, &command, options] { command = [&run, options] { return runSettingsList(run, *options); }; });
}

void addBars(CLI::App& app, const RunOptions& run, Command& command) {
    auto* sub = app.add_subcommand("bars", "Print the command bars of a window of the host");
    auto options = std::make_shared<BarsOptions>();
    sub->add_option("--window", options->window, "Of which window (default: explorer)")->check(CLI::IsMember(barsWindows()));
    sub->add_flag("--json", options->json, "A JSON array of objects: name, position, visible, temporary, builtIn, controls");
    sub->footer("Example: lorvane bars --window mail");
    sub->callback([&run, &command, options] { command = [&run, options] { return runBars(run, *options); }; });
}

void addServe(CLI::App& app, const RunOptions& run, Command& command) {
    auto* sub = app.add_subcommand("serve", "Serve other programs: JSON-RPC on standard input and output, or on a socket");
    auto options = std::make_shared<ServeOptions>();
    sub->add_option("--socket", options->socket, "Listen on this Unix socket, which only you may open")->type_name("PATH")->check(emptyWord);
    sub->footer("Example: lorvane serve --socket /run/user/1000/lorvane --now 2028-01-10T09:00");
    sub->callback([&run, &command, options] { command = [&run, options] { return runServe(run, *options); }; });
}

/// The configuration is a word at the end.
std::string versionLine() {
    return std::string("lorvane " LORVANE_VERSION) + (host::ProcessFeatureEnabled ? " processes" : "");
}

int status(ExitStatus end) {
    return static_cast<int>(end);
}

}  // namespace

int main(int argc, char** argv) {
    // A reader that goes away is a failed write, so that the command still ends in order.
    std::signal(SIGPIPE, SIG_IGN);
    // Likewise a file that may not grow any more.
    std::signal(SIGXFSZ, SIG_IGN);
    CLI::App app("Reusable e-mail texts: find a template and put it into a mail");
    app.name("lorvane");
    app.set_version_flag("--version", versionLine());
    app.require_subcommand(1);
    app.fallthrough();
    RunOptions run;
    Command command;
    addRunOptions(app, run);
    for (const auto add : {addInsert, addTemplates, addTemplate, addImport, addStore, addSettings, addBars, addServe}) add(app, run, command);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? status(ExitStatus::Done) : status(ExitStatus::Usage);
    }
    try {
        return status(command());
    } catch (const CommandEnd& end) {
        tell(std::string("lorvane: ") + end.what());
        return status(end.status());
    } catch (const host::HostError& error) {
        tell(u"lorvane: " + error.description() + u" (error " + host::decimal(error.number()) + u")");
        return status(ExitStatus::Fault);
    } catch (const std::exception& error) {
        tell(std::string("lorvane: ") + error.what());
        return status(ExitStatus::Fault);
    }
}
