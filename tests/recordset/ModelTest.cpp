#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

#include "RecordsetBuilder.h"
#include "recordset/Errors.h"

// A recordset and its clones beside a model that keeps nothing but a list of rows and works everything out anew each time.
namespace lorvane::recordset {
namespace {

struct ModelRow {
    std::u16string text;
    std::int32_t number = 0;
    bool isDeleted = false;
};

struct Choice {
    std::u16string_view text;
    std::function<bool(const ModelRow&)> keeps;
};

bool holds(const ModelRow& row, std::u16string_view sought) {
    return host::InStr(1, row.text, sought, host::Compare::IgnoreCase) != 0;
}

const Choice filters[] = {
    {u"", [](const ModelRow&) { return true; }},
    {u"t LIKE '*a*'", [](const ModelRow& row) { return holds(row, u"a"); }},
    {u"t LIKE '*é*'", [](const ModelRow& row) { return holds(row, u"É"); }},
    {u"n > 3 AND n < 8", [](const ModelRow& row) { return row.number > 3 && row.number < 8; }},
    {u"(t LIKE '*b*' AND n >= 5) OR t = 'AA'",
     [](const ModelRow& row) { return (holds(row, u"b") && row.number >= 5) || host::equalsIgnoreCase(row.text, u"aa"); }},
    {u"t = 'nothing'", [](const ModelRow&) { return false; }},
};

struct Order {
    std::u16string_view text;
    std::function<int(const ModelRow&, const ModelRow&)> compare;
};

int byText(const ModelRow& a, const ModelRow& b) {
    return Collation::of(u"de-DE")->compare(a.text, b.text);
}
int byNumber(const ModelRow& a, const ModelRow& b) {
    return a.number - b.number;
}

const Order orders[] = {
    {u"", [](const ModelRow&, const ModelRow&) { return 0; }},
    {u"t", byText},
    {u"t DESC", [](const ModelRow& a, const ModelRow& b) { return -byText(a, b); }},
    {u"n, t DESC", [](const ModelRow& a, const ModelRow& b) { return byNumber(a, b) != 0 ? byNumber(a, b) : -byText(a, b); }},
};

class Model {
public:
    explicit Model(std::vector<ModelRow>& rows) : rows_(rows) { first(); }

    std::vector<std::size_t> list() const {
        std::vector<std::size_t> listed;
        for (std::size_t i = 0; i < rows_.size(); ++i) {
            if (!rows_[i].isDeleted && filter_->keeps(rows_[i])) listed.push_back(i);
        }
        std::ranges::stable_sort(listed, [this](std::size_t a, std::size_t b) { return order_->compare(rows_[a], rows_[b]) < 0; });
        return listed;
    }

    // Where the current row stands, or would stand.
    std::size_t place(bool& isThere) const {
        const auto listed = list();
        const auto exact = std::ranges::find(listed, static_cast<std::size_t>(at_));
        isThere = exact != listed.end();
        if (isThere) return static_cast<std::size_t>(exact - listed.begin());
        std::size_t before = 0;
        for (const std::size_t row : listed) {
            const int order = order_->compare(rows_[row], rows_[static_cast<std::size_t>(at_)]);
            if (order < 0 || (order == 0 && row < static_cast<std::size_t>(at_))) ++before;
        }
        return before;
    }

    void first() { behind(0); }
    void behind(std::size_t position) {
        const auto listed = list();
        at_ = position < listed.size() ? static_cast<std::ptrdiff_t>(listed[position]) : atEof;
    }
    bool next() {
        if (at_ == atEof || (at_ == atBof && list().empty())) return false;
        if (at_ == atBof) return first(), true;
        bool isThere = false;
        const std::size_t position = place(isThere);
        behind(position + (isThere ? 1 : 0));
        return true;
    }
    bool previous() {
        const auto listed = list();
        if (at_ == atBof || (at_ == atEof && listed.empty())) return false;
        bool isThere = false;
        const std::size_t position = at_ == atEof ? listed.size() : place(isThere);
        at_ = position == 0 ? atBof : static_cast<std::ptrdiff_t>(listed[position - 1]);
        return true;
    }
    bool isOnRow() const { return at_ >= 0 && !rows_[static_cast<std::size_t>(at_)].isDeleted; }
    ModelRow& row() const { return rows_[static_cast<std::size_t>(at_)]; }

    void commit(std::u16string text, std::int32_t number) {
        bool wasThere = false;
        const std::size_t position = place(wasThere);
        row().text = std::move(text);
        row().number = number;
        if (wasThere && !filter_->keeps(row())) behind(position);
    }
    void add(std::u16string text, std::int32_t number) {
        rows_.push_back({std::move(text), number, false});
        at_ = filter_->keeps(rows_.back()) ? static_cast<std::ptrdiff_t>(rows_.size() - 1) : atEof;
    }
    void filter(const Choice& choice) {
        filter_ = &choice;
        first();
    }
    void order(const Order& order) {
        order_ = &order;
        first();
    }
    std::int32_t position() const {
        if (at_ >= 0) {
            bool isThere = false;
            const std::size_t position = place(isThere);
            return isThere ? static_cast<std::int32_t>(position) + 1 : -1;
        }
        if (list().empty()) return -1;
        return at_ == atBof ? -2 : -3;
    }
    bool isAtBof() const { return at_ == atBof || (at_ == atEof && list().empty()); }
    bool isAtEof() const { return at_ == atEof || (at_ == atBof && list().empty()); }

private:
    static constexpr std::ptrdiff_t atBof = -1, atEof = -2;
    std::vector<ModelRow>& rows_;
    std::ptrdiff_t at_ = atEof;
    const Choice* filter_ = &filters[0];
    const Order* order_ = &orders[0];
};

class Pair {
public:
    Pair(Object real, std::vector<ModelRow>& rows) : real_(std::move(real)), model_(rows) {}

    void check() const {
        ASSERT_EQ(recordCount(real_), static_cast<std::int32_t>(model_.list().size()));
        ASSERT_EQ(position(real_), model_.position());
        ASSERT_EQ(atStart(real_), model_.isAtBof());
        ASSERT_EQ(atEnd(real_), model_.isAtEof());
        if (model_.isOnRow()) {
            ASSERT_EQ(text(real_, u"t"), model_.row().text);
            ASSERT_EQ(field(real_, u"n").getNumber(Member::Value), model_.row().number);
        } else {
            ASSERT_EQ(errorOf([this] { text(real_, u"t"); }), error::NoCurrentRecord);
        }
    }

    void checkWalk() {
        const auto listed = model_.list();
        if (listed.empty()) return;
        real_.call(Member::MoveFirst);
        model_.first();
        for (std::size_t i = 0; i < listed.size(); ++i) {
            ASSERT_EQ(text(real_, u"t"), model_.row().text) << "at " << i;
            ASSERT_EQ(position(real_), static_cast<std::int32_t>(i) + 1);
            real_.call(Member::MoveNext);
            model_.next();
        }
        ASSERT_TRUE(atEnd(real_));
    }

    // One operation; false where it was a wholesale one, after which a walk is worth its time.
    void step(std::mt19937& random) {
        const auto randomText = [&random] {
            static constexpr std::u16string_view letters = u"aAbBéÉäßsz";
            std::u16string made(random() % 4, u' ');
            for (char16_t& unit : made) unit = letters[random() % letters.size()];
            return made;
        };
        switch (random() % 12) {
            case 0:
            case 1:
            case 2:
                return add(randomText(), static_cast<std::int32_t>(random() % 10));
            case 3:
            case 4:
                return change(randomText(), static_cast<std::int32_t>(random() % 10));
            case 5:
                return remove();
            case 6:
                return filterBy(filters[random() % std::size(filters)]);
            case 7:
                return orderBy(orders[random() % std::size(orders)]);
            case 8:
                return goTo(random);
            case 9:
                return expectMove(errorOf([this] { callNamed(real_, u"MovePrevious"); }), model_.previous());
            default:
                return expectMove(errorOf([this] { real_.call(Member::MoveNext); }), model_.next());
        }
    }

private:
    void expectMove(std::int32_t error, bool moved) { ASSERT_EQ(error, moved ? 0 : error::NoCurrentRecord); }

    void write(std::u16string_view value, std::int32_t number) {
        assign(real_, u"t", value);
        assign(real_, u"n", number);
        real_.call(Member::Update);
    }
    void add(const std::u16string& value, std::int32_t number) {
        real_.call(Member::AddNew);
        write(value, number);
        model_.add(value, number);
    }
    void change(const std::u16string& value, std::int32_t number) {
        if (!model_.isOnRow()) {
            ASSERT_EQ(errorOf([&] { write(value, number); }), error::NoCurrentRecord);
            return;
        }
        write(value, number);
        model_.commit(value, number);
    }
    void remove() {
        const std::int32_t raised = errorOf([this] { real_.call(Member::Delete); });
        ASSERT_EQ(raised, model_.isOnRow() ? 0 : error::NoCurrentRecord);
        if (model_.isOnRow()) model_.row().isDeleted = true;
    }
    void filterBy(const Choice& choice) {
        real_.put(Member::Filter, choice.text);
        model_.filter(choice);
    }
    void orderBy(const Order& order) {
        real_.put(Member::Sort, order.text);
        model_.order(order);
    }
    void goTo(std::mt19937& random) {
        const auto listed = model_.list();
        if (listed.empty()) return;
        const std::size_t position = random() % listed.size();
        real_.put(Member::AbsolutePosition, static_cast<std::int32_t>(position) + 1);
        model_.behind(position);
    }

    Object real_;
    Model model_;
};

class AgainstModel : public testing::TestWithParam<unsigned> {};

TEST_P(AgainstModel, RandomOperationsOnThreeClones) {
    std::mt19937 random(GetParam());
    // Some runs look at every view after every step, others let changes pile up unseen.
    const unsigned lookEvery = GetParam() % 2 == 0 ? 1 : 150;
    std::vector<ModelRow> rows;
    Object first = makeRecordset(Collation::of(u"de-DE"));
    appendField(first, u"t", 200, 100);
    appendField(first, u"n", 3, 0);
    first.call(Member::Open);
    std::vector<Pair> pairs;
    for (int i = 0; i < 3; ++i) pairs.emplace_back(i == 0 ? first : first.call(Member::Clone).toObject(), rows);
    for (unsigned round = 0; round < 750; ++round) {
        SCOPED_TRACE(round);
        const std::size_t actor = lookEvery == 1 ? random() % pairs.size() : (round / lookEvery) % pairs.size();
        pairs[actor].check();
        pairs[actor].step(random);
        pairs[actor].check();
        if (round % lookEvery == 0) {
            for (const Pair& pair : pairs) pair.check();
        }
        if (round % 100 == 99) pairs[random() % pairs.size()].checkWalk();
        if (HasFatalFailure()) return;
    }
}

// Tables that are copied row by row from others, whole or in part, and from copies, while any of them changes and goes: each is filtered and sorted as a list
// of its own rows is.
TEST_P(AgainstModel, CopiesOfTablesThatChange) {
    struct Kept {
        Object table;
        std::vector<ModelRow> rows;
    };
    std::mt19937 random(GetParam());
    const auto below = [&random](std::size_t bound) { return random() % bound; };
    static constexpr std::u16string_view words[] = {u"a", u"B", u"é", u"Ä", u"ß", u"ab", u"\u4E2D", u"(Shared)", u"no. 7"};
    const auto randomText = [&] {
        std::u16string made;
        for (std::size_t count = below(5); count > 0; --count) made.append(words[below(std::size(words))]).append(u" ");
        return made;
    };
    const auto newTable = [] {
        const Object table = makeRecordset(Collation::of(u"de-DE"));
        appendField(table, u"t", 200, 200);
        appendField(table, u"n", 3, 0);
        table.call(Member::Open);
        return table;
    };
    const auto add = [](Kept& kept, std::u16string value, std::int32_t number) {
        kept.table.call(Member::AddNew);
        assign(kept.table, u"t", value);
        assign(kept.table, u"n", number);
        kept.table.call(Member::Update);
        kept.rows.push_back({std::move(value), number, false});
    };
    const auto fill = [&](Kept& kept, std::size_t count) {
        for (; count > 0; --count) add(kept, randomText(), static_cast<std::int32_t>(below(10)));
    };
    // The rows of a view, in its order, most of them as they are.
    const auto copy = [&](const Object& view, bool withSuffix, std::size_t oneOf) {
        Kept made{newTable(), {}};
        if (recordCount(view) == 0) return made;
        for (view.call(Member::MoveFirst); !atEnd(view); view.call(Member::MoveNext)) {
            if (oneOf > 1 && below(oneOf) != 0) continue;
            add(made, text(view, u"t") + (withSuffix && below(3) == 0 ? u" (Shared)" : u""), field(view, u"n").getNumber(Member::Value));
        }
        return made;
    };
    const auto check = [&](const Kept& kept) {
        const Object view = kept.table.call(Member::Clone).toObject();
        const Choice& choice = filters[below(std::size(filters))];
        const Order& order = orders[below(std::size(orders))];
        view.put(Member::Filter, choice.text);
        view.put(Member::Sort, order.text);
        std::vector<ModelRow> expected;
        std::ranges::copy_if(kept.rows, std::back_inserter(expected), [&](const ModelRow& row) { return !row.isDeleted && choice.keeps(row); });
        std::ranges::stable_sort(expected, [&](const ModelRow& a, const ModelRow& b) { return order.compare(a, b) < 0; });
        Texts expectedTexts;
        for (const ModelRow& row : expected) expectedTexts.push_back(row.text);
        EXPECT_EQ(walk(view, u"t"), expectedTexts) << "filter " << host::toUtf8(choice.text) << ", sort " << host::toUtf8(order.text);
    };

    std::vector<Kept> tables;
    tables.push_back({newTable(), {}});
    fill(tables[0], 1500);
    for (int round = 0; round < 40; ++round) {
        SCOPED_TRACE(round);
        Kept& chosen = tables[below(tables.size())];
        switch (below(8)) {
            case 0:
                fill(chosen, below(40));
                break;
            case 1:  // a text changes
                if (chosen.rows.empty()) break;
                chosen.table.call(Member::MoveFirst);
                for (ModelRow& row : chosen.rows) {
                    if (row.isDeleted) continue;
                    row.text = randomText();
                    assign(chosen.table, u"t", row.text);
                    chosen.table.call(Member::Update);
                    break;
                }
                break;
            case 2:  // the first row goes
                if (const auto first = std::ranges::find(chosen.rows, false, &ModelRow::isDeleted); first != chosen.rows.end()) {
                    chosen.table.call(Member::MoveFirst);
                    chosen.table.call(Member::Delete);
                    first->isDeleted = true;
                    if (recordCount(chosen.table) > 0) chosen.table.call(Member::MoveFirst);
                }
                break;
            case 3:
                if (tables.size() > 1) tables.erase(tables.begin() + static_cast<std::ptrdiff_t>(below(tables.size())));
                break;
            default: {
                const Object view = chosen.table.call(Member::Clone).toObject();
                if (below(3) == 0) view.put(Member::Filter, u"t LIKE '*a*'");
                if (below(3) == 0) view.put(Member::Sort, orders[below(std::size(orders))].text);
                Kept made = copy(view, below(3) == 0, 1 + below(3));
                if (below(3) == 0) fill(made, below(40));
                if (tables.size() < 6) tables.push_back(std::move(made));
                break;
            }
        }
        for (const Kept& kept : tables) check(kept);
        if (HasFailure()) return;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, AgainstModel, testing::Range(0u, 10u));

}  // namespace
}  // namespace lorvane::recordset
