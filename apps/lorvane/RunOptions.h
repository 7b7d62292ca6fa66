#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "host/Object.h"

namespace lorvane::cli {

/// What every command takes: where the store lies, and what would vary from run to run. Text is UTF-8.
struct RunOptions {
    std::optional<std::filesystem::path> store;  ///< folder of the store; settings, application data and documents lie under it too
    std::string hostVersion = "11";              ///< major number or dotted text
    std::string editor = "html";                 ///< plain, html, rich or word
    std::string now;                             ///< ISO moment at which date and time stand; "" for the machine's clock
    std::string locale;                          ///< "" for the environment's
    std::string from;                            ///< "Name <address>"; "" for the default account
    bool noExplorer = false;
    bool answerYes = false;
    std::string log;                                                 ///< file for the log of host calls; "" for none
    std::function<host::Object(const host::Object&)> decorate = {};  ///< stands in front of all that the add-in sees; set by programs, never by a user
};

}  // namespace lorvane::cli
