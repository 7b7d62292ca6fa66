#include "html/ParsedTree.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <new>
#include <optional>
#include <vector>

#include "html/MarkupScanner.h"
#include "html/Units.h"

namespace lorvane::html {

namespace {

constexpr std::size_t Alignment = 16;
constexpr std::size_t BlockSize = std::size_t{1} << 20;
constexpr std::size_t LargePiece = std::size_t{1} << 16;
// A tree takes some forty bytes a byte where every fourth is a "<br>"; reconstructed formatting can take the square.
constexpr std::size_t LimitBase = std::size_t{64} << 20;
constexpr std::size_t LimitPerByte = 128;

constexpr std::size_t DeepestOpen = 2048;
constexpr std::size_t MostAttributes = 2048;
constexpr std::size_t SearchedBack = 64;

std::size_t rounded(std::size_t size) noexcept {
    return (size + Alignment - 1) / Alignment * Alignment;
}

}  // namespace

struct alignas(Alignment) ParsedTree::Block {
    Block* next;
    Block* previous;  ///< of a large piece
    std::size_t used;
    std::size_t capacity;

    char* data() noexcept { return reinterpret_cast<char*>(this + 1); }
};

/// Stands in front of each piece.
struct alignas(Alignment) ParsedTree::Head {
    std::size_t size;
    Block* large;  ///< the block of its own, if it has one
};

ParsedTree::ParsedTree(std::string_view utf8) : limit_(LimitBase + LimitPerByte * utf8.size()) {
    GumboOptions options = kGumboDefaultOptions;
    options.allocator = &ParsedTree::allocate;
    options.deallocator = &ParsedTree::release;
    options.userdata = this;
    options.max_errors = 0;
    output_ = parse(*this, options, utf8.data(), utf8.size());
}

// Only plain values live in this frame and in those of the library, which the jump leaves.
GumboOutput* ParsedTree::parse(ParsedTree& self, const GumboOptions& options, const char* data, std::size_t size) {
    if (setjmp(self.outOfMemory_) != 0) return nullptr;
    return gumbo_parse_with_options(&options, data, size);
}

ParsedTree::~ParsedTree() {
    for (Block* list : {blocks_, larges_}) {
        while (list != nullptr) {
            Block* next = list->next;
            std::free(list);
            list = next;
        }
    }
}

void* ParsedTree::allocate(void* self, std::size_t size) {
    return static_cast<ParsedTree*>(self)->allocateOrLeave(size);
}

void* ParsedTree::allocateOrLeave(std::size_t size) {
    const std::size_t whole = rounded(std::max<std::size_t>(size, 1)) + sizeof(Head);
    if (whole >= LargePiece) {
        Block* block = addBlock(whole);
        block->next = larges_;
        if (larges_ != nullptr) larges_->previous = block;
        larges_ = block;
        return new (block->data()) Head{whole, block} + 1;
    }
    if (blocks_ == nullptr || blocks_->capacity - blocks_->used < whole) {
        Block* block = addBlock(BlockSize);
        block->next = blocks_;
        blocks_ = block;
    }
    Head* head = new (blocks_->data() + blocks_->used) Head{whole, nullptr};
    blocks_->used += whole;
    lastPiece_ = head + 1;
    return lastPiece_;
}

ParsedTree::Block* ParsedTree::addBlock(std::size_t capacity) {
    if (capacity > limit_ - taken_) std::longjmp(outOfMemory_, 1);
    void* memory = std::malloc(sizeof(Block) + capacity);
    if (memory == nullptr) std::longjmp(outOfMemory_, 1);
    taken_ += capacity;
    return new (memory) Block{nullptr, nullptr, 0, capacity};
}

void ParsedTree::release(void* self, void* memory) {
    if (memory != nullptr) static_cast<ParsedTree*>(self)->releasePiece(memory);
}

void ParsedTree::releasePiece(void* memory) {
    const Head head = *(static_cast<Head*>(memory) - 1);
    if (head.large != nullptr) {
        if (head.large->next != nullptr) head.large->next->previous = head.large->previous;
        (head.large->previous != nullptr ? head.large->previous->next : larges_) = head.large->next;
        taken_ -= head.large->capacity;
        std::free(head.large);
    } else if (memory == lastPiece_) {
        blocks_->used -= head.size;
        lastPiece_ = nullptr;
    }
}

namespace {

bool equalsName(std::u16string_view a, std::u16string_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char16_t x, char16_t y) { return asciiLower(x) == asciiLower(y); });
}

bool isOneOf(std::u16string_view name, std::initializer_list<std::u16string_view> names) noexcept {
    return std::any_of(names.begin(), names.end(), [&](std::u16string_view other) { return equalsName(name, other); });
}

/// How many elements the parser may have open at once: an estimate that errs upwards.
class DepthEstimate {
public:
    std::size_t value() const noexcept { return open_.size() + uncertain_; }

    void start(const MarkupToken& token) {
        if (closesItself(token)) return;
        if (!open_.empty() && isNextEntry(token.name, open_.back())) open_.pop_back();
        if (isForeign(token.name)) ++foreign_;
        open_.push_back(token.name);
    }

    void end(std::u16string_view name) {
        const std::size_t last = open_.size() - std::min(open_.size(), SearchedBack);
        for (std::size_t i = open_.size(); i > last; --i) {
            if (!equalsName(open_[i - 1], name)) continue;
            // Tags that close out of order may leave what they name open, and all within.
            if (i < open_.size()) uncertain_ += open_.size() - i + 1;
            for (std::size_t k = i; k <= open_.size(); ++k) foreign_ -= isForeign(open_[k - 1]) ? 1 : 0;
            open_.resize(i - 1);
            return;
        }
    }

private:
    static bool isNextEntry(std::u16string_view name, std::u16string_view last) noexcept {
        return (equalsName(name, u"li") && equalsName(last, u"li")) || (isOneOf(name, {u"dd", u"dt"}) && isOneOf(last, {u"dd", u"dt"}));
    }
    static bool isForeign(std::u16string_view name) noexcept { return isOneOf(name, {u"svg", u"math"}); }

    /// Elements that end by themselves when one like them starts, so that they nest no deeper than what is counted.
    bool closesItself(const MarkupToken& token) const {
        if (foreign_ > 0 && token.selfClosing) return true;
        return isVoidName(token.name) ||
               isOneOf(token.name, {u"p", u"tr", u"td", u"th", u"tbody", u"thead", u"tfoot", u"option", u"optgroup", u"html", u"head", u"body"});
    }

    std::vector<std::u16string_view> open_;
    std::size_t uncertain_ = 0;
    std::size_t foreign_ = 0;
};

}  // namespace

bool isBeyondParser(std::u16string_view source) {
    DepthEstimate depth;
    MarkupScanner scanner(source);
    while (const std::optional<MarkupToken> token = scanner.next()) {
        if (token->attributes > MostAttributes) return true;
        if (token->kind == MarkupToken::Kind::StartTag) depth.start(*token);
        if (token->kind == MarkupToken::Kind::EndTag) depth.end(token->name);
        if (depth.value() > DeepestOpen) return true;
    }
    return false;
}

}  // namespace lorvane::html
