#include "html/HtmlDocument.h"

#include <utility>

#include "html/HtmlParser.h"

namespace lorvane::html {

HtmlDocument::HtmlDocument(std::u16string source) : source_(std::move(source)), map_(mapHtml(source_)) {}

}  // namespace lorvane::html
