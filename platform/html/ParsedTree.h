#pragma once

#include <gumbo.h>

#include <csetjmp>
#include <cstddef>
#include <string_view>

namespace lorvane::html {

/// A parser's tree and the memory it lies in.
///
/// The library frees a tree by recursion and asks for memory without limit. Here all of it comes from one arena, which goes as a whole and has a limit.
class ParsedTree {
public:
    /// Parses UTF-8, which must outlive the tree.
    explicit ParsedTree(std::string_view utf8);
    ~ParsedTree();
    ParsedTree(const ParsedTree&) = delete;
    ParsedTree& operator=(const ParsedTree&) = delete;

    /// The root element; null where the parser needed more memory than a sound document can.
    const GumboNode* root() const noexcept { return output_ == nullptr ? nullptr : output_->root; }

private:
    struct Block;
    struct Head;

    static void* allocate(void* self, std::size_t size);
    static void release(void* self, void* memory);
    void* allocateOrLeave(std::size_t size);
    void releasePiece(void* memory);
    Block* addBlock(std::size_t capacity);
    static GumboOutput* parse(ParsedTree& self, const GumboOptions& options, const char* data, std::size_t size);

    GumboOutput* output_ = nullptr;
    Block* blocks_ = nullptr;    ///< small pieces, cut from the block on top
    Block* larges_ = nullptr;    ///< large pieces, each in its own block
    void* lastPiece_ = nullptr;  ///< the last small piece, which can be given back
    std::size_t taken_ = 0;
    std::size_t limit_ = 0;
    std::jmp_buf outOfMemory_;
};

/// True where a source nests so deep, or closes so little of what it opens, that the parser would need time beyond all measure.
bool isBeyondParser(std::u16string_view source);

}  // namespace lorvane::html
