#include "services/ServicesRig.h"

#include <sys/fsuid.h>
#include <unistd.h>

#include <utility>

#include "services/SurfacePath.h"

namespace lorvane::services::test {

namespace {

constexpr unsigned nobody = 65534;

}  // namespace

Rig::Rig(ServiceOptions options) : services(inFolder(std::move(options))) {}

ServiceOptions Rig::inFolder(ServiceOptions options) const {
    options.places = {folder.file("Documents"), folder.file("Roaming"), folder.path()};
    return options;
}

std::u16string Rig::path(std::u16string_view name) const {
    return surfacePath(folder.path()).value().append(u"\\").append(name);
}

std::string contentOf(const std::filesystem::path& file) {
    const auto bytes = mailstore::test::readBytes(file);
    return {bytes.begin(), bytes.end()};
}

void fill(const std::filesystem::path& file, const std::string& content) {
    mailstore::test::writeBytes(file, {content.begin(), content.end()});
}

VariableScope::VariableScope(const char* name, const char* value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    if (value)
        ::setenv(name, value, 1);
    else
        ::unsetenv(name);
}

VariableScope::~VariableScope() {
    if (before_)
        ::setenv(name_, before_->c_str(), 1);
    else
        ::unsetenv(name_);
}

OrdinaryUserScope::OrdinaryUserScope() : before_(::geteuid() == 0 ? ::setfsuid(nobody) : -1) {}

OrdinaryUserScope::~OrdinaryUserScope() {
    if (before_ >= 0) ::setfsuid(static_cast<unsigned>(before_));
}

}  // namespace lorvane::services::test
