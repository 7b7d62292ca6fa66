#include <algorithm>
#include <optional>
#include <string>

#include "host/HostError.h"
#include "host/TextFunctions.h"
#include "recordset/Criteria.h"
#include "recordset/Errors.h"

namespace lorvane::recordset {

namespace {

constexpr int deepestGroup = 64;

bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

bool isNameUnit(char16_t unit) {
    return isDigit(unit) || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit == u'_' || unit >= 0x80;
}

bool isBlank(char16_t unit) {
    return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
}

std::u16string foldedText(std::u16string_view text) {
    std::u16string folded(text);
    std::ranges::transform(folded, folded.begin(), host::foldUnit);
    return folded;
}

struct Literal {
    enum class Kind { Quoted, Hashed, Number, Word } kind;
    std::u16string text;
};

using Relation = Criteria::Relation;

bool isPattern(char16_t unit) {
    return unit == u'*' || unit == u'%';
}

void bindPattern(Criteria::Clause& clause, std::u16string_view pattern) {
    const bool atStart = !pattern.empty() && isPattern(pattern.front());
    const bool atEnd = !pattern.empty() && isPattern(pattern.back());
    if (pattern.size() == 1 && atEnd) {
        clause.relation = Relation::StartsWith;
        return;
    }
    if (atStart && !atEnd) raise(error::BadArgument);
    if (atEnd) pattern.remove_suffix(1);
    if (atStart) pattern.remove_prefix(1);
    clause.relation = atStart ? Relation::Contains : atEnd ? Relation::StartsWith : Relation::Equal;
    clause.folded = foldedText(pattern);
}

double numberOf(std::u16string_view text) {
    std::u16string plain(text);
    std::erase(plain, u'$');
    try {
        return host::numberFromText(plain);
    } catch (const host::HostError&) {
        raise(error::BadArgument);
    }
}

double booleanOf(const Literal& literal) {
    if (host::equalsIgnoreCase(literal.text, u"True")) return -1;
    if (host::equalsIgnoreCase(literal.text, u"False")) return 0;
    return numberOf(literal.text) != 0 ? -1 : 0;
}

double dateOf(const Literal& literal) {
    if (literal.kind == Literal::Kind::Number) return numberOf(literal.text);
    const auto moment = dateFromText(literal.text);
    if (!moment) raise(error::BadArgument);
    return moment->days;
}

void bindValue(Criteria::Clause& clause, const FieldDefinition& field, Literal literal) {
    const Storage storage = storageOf(field.type).value_or(Storage::Exact);
    const bool isWord = literal.kind == Literal::Kind::Word;
    clause.isText = storage == Storage::Text || storage == Storage::Exact;
    if (clause.isText) {
        if (isWord) raise(error::BadArgument);
        clause.folded = foldedText(literal.text);
        clause.text = std::move(literal.text);
        return;
    }
    switch (storage) {
        case Storage::Boolean:
            clause.number = booleanOf(literal);
            return;
        case Storage::Date:
            if (isWord) raise(error::BadArgument);
            clause.number = dateOf(literal);
            return;
        default:
            if (isWord || literal.kind == Literal::Kind::Hashed) raise(error::BadArgument);
            clause.number = numberOf(literal.text);
    }
}

}  // namespace

/// Reads a filter text by descent, one routine a rule.
class CriteriaParser {
public:
    CriteriaParser(std::u16string_view text, std::span<const FieldDefinition> fields) : text_(text), fields_(fields) {}

    Criteria parse() {
        readChain(0);
        skipBlanks();
        if (at_ != text_.size()) raise(error::BadArgument);
        return std::move(criteria_);
    }

private:
    // Clauses and groups with AND and OR between them; true where an OR is in it, at any depth.
    bool readChain(int depth) {
        bool orGroupPending = false;  // the operand in front is a group with an OR
        bool hasOr = readOperand(depth, orGroupPending);
        for (;;) {
            const bool isAnd = takeWord(u"AND");
            if (!isAnd && !takeWord(u"OR")) return hasOr;
            bool isOrGroup = false;
            hasOr = readOperand(depth, isOrGroup) || hasOr;
            if (isAnd && (orGroupPending || isOrGroup)) raise(error::BadArgument);
            orGroupPending = orGroupPending || isOrGroup;
            hasOr = hasOr || !isAnd;
            criteria_.steps_.push_back(isAnd ? Criteria::Step::And : Criteria::Step::Or);
        }
    }

    bool readOperand(int depth, bool& isOrGroup) {
        skipBlanks();
        if (!takeSign(u'(')) {
            readClause();
            return false;
        }
        if (depth == deepestGroup) raise(error::BadArgument);
        isOrGroup = readChain(depth + 1);
        skipBlanks();
        if (!takeSign(u')')) raise(error::BadArgument);
        return isOrGroup;
    }

    void readClause() {
        Criteria::Clause clause;
        clause.field = readField();
        const std::optional<Relation> relation = readRelation();
        Literal literal = readLiteral();
        const FieldDefinition& field = fields_[clause.field];
        if (relation) {
            clause.relation = *relation;
            bindValue(clause, field, std::move(literal));
        } else {
            const bool isText = literal.kind == Literal::Kind::Quoted || literal.kind == Literal::Kind::Hashed;
            if (!isText || storageOf(field.type) != Storage::Text) raise(error::BadArgument);
            bindPattern(clause, literal.text);
        }
        criteria_.steps_.push_back(Criteria::Step::Clause);
        criteria_.clauses_.push_back(std::move(clause));
    }

    std::size_t readField() {
        skipBlanks();
        std::u16string_view name;
        if (takeSign(u'[')) {
            name = upTo(u']');
        } else {
            const std::size_t start = at_;
            while (at_ < text_.size() && isNameUnit(text_[at_])) ++at_;
            name = text_.substr(start, at_ - start);
        }
        for (std::size_t i = 0; i < fields_.size(); ++i) {
            if (host::equalsIgnoreCase(fields_[i].name, name)) return i;
        }
        raise(error::BadArgument);
    }

    // Empty for LIKE.
    std::optional<Relation> readRelation() {
        skipBlanks();
        static constexpr struct {
            std::u16string_view sign;
            Relation relation;
        } signs[] = {{u"<=", Relation::LessOrEqual}, {u">=", Relation::GreaterOrEqual}, {u"<>", Relation::NotEqual},
                     {u"<", Relation::Less},         {u">", Relation::Greater},         {u"=", Relation::Equal}};
        for (const auto& [sign, relation] : signs) {
            if (!text_.substr(at_).starts_with(sign)) continue;
            at_ += sign.size();
            return relation;
        }
        if (!takeWord(u"LIKE")) raise(error::BadArgument);
        return std::nullopt;
    }

    Literal readLiteral() {
        skipBlanks();
        if (takeSign(u'\'')) return {Literal::Kind::Quoted, readQuoted()};
        if (takeSign(u'#')) return {Literal::Kind::Hashed, std::u16string(upTo(u'#'))};
        const std::size_t start = at_;
        while (at_ < text_.size() && (isNameUnit(text_[at_]) || text_[at_] == u'$' || text_[at_] == u'.' || isSign(at_, start))) ++at_;
        std::u16string word(text_.substr(start, at_ - start));
        if (host::equalsIgnoreCase(word, u"True") || host::equalsIgnoreCase(word, u"False")) return {Literal::Kind::Word, std::move(word)};
        numberOf(word);
        return {Literal::Kind::Number, std::move(word)};
    }

    // A sign of a number: at its start, behind "$", or behind the "E" of its exponent.
    bool isSign(std::size_t place, std::size_t start) const {
        if (text_[place] != u'+' && text_[place] != u'-') return false;
        return place == start || text_[place - 1] == u'$' || text_[place - 1] == u'e' || text_[place - 1] == u'E';
    }

    std::u16string readQuoted() {
        std::u16string value;
        for (;;) {
            const std::u16string_view piece = upTo(u'\'');
            value.append(piece);
            if (!takeSign(u'\'')) return value;
            value.push_back(u'\'');
        }
    }

    std::u16string_view upTo(char16_t close) {
        const std::size_t end = text_.find(close, at_);
        if (end == std::u16string_view::npos) raise(error::BadArgument);
        const std::u16string_view inside = text_.substr(at_, end - at_);
        at_ = end + 1;
        return inside;
    }

    void skipBlanks() {
        while (at_ < text_.size() && isBlank(text_[at_])) ++at_;
    }

    bool takeSign(char16_t sign) {
        if (at_ == text_.size() || text_[at_] != sign) return false;
        ++at_;
        return true;
    }

    bool takeWord(std::u16string_view word) {
        skipBlanks();
        if (!host::equalsIgnoreCase(text_.substr(at_, word.size()), word)) return false;
        if (at_ + word.size() < text_.size() && isNameUnit(text_[at_ + word.size()])) return false;
        at_ += word.size();
        return true;
    }

    std::u16string_view text_;
    std::span<const FieldDefinition> fields_;
    std::size_t at_ = 0;
    Criteria criteria_;
};

Criteria Criteria::parse(std::u16string_view text, std::span<const FieldDefinition> fields) {
    return CriteriaParser(text, fields).parse();
}

}  // namespace lorvane::recordset
