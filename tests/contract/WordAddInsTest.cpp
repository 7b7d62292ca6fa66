#include "contract/WordFixture.h"

/// Word's add-ins and templates, as far as the add-in's own global template needs them.
namespace lorvane::contract {

class WordAddIns : public WordRun {
protected:
    Object word() {
        if (!inspector_) inspector_ = host().open(host().htmlItem(u"Dear John"));
        return wordOf(inspector_.WordEditor());
    }
    Object addIns() { return object(word(), u"AddIns"); }
    Object addIn(std::u16string_view path) { return object(word(), u"AddIns", {path}); }
    Object wordTemplate(std::u16string_view path) { return object(word(), u"Templates", {path}); }

private:
    Inspector inspector_;  // ends before the host, which the base owns
};
INSTANTIATE_EACH_STORE(WordAddIns);

TEST_P(WordAddIns, AnUnknownOneIsAnError) {
    EXPECT_NE(errorOf([&] { addIn(person().path("Letters.dot")); }).number(), 0);
    EXPECT_NE(errorOf([&] { addIn(u""); }).number(), 0);
}

TEST_P(WordAddIns, AddingMakesOneMore) {
    const std::int32_t before = number(addIns(), u"Count");
    call(addIns(), u"Add", {person().writeFile("Letters.dot", bytes("x"))});
    EXPECT_EQ(number(addIns(), u"Count"), before + 1);
    call(addIns(), u"Add", {person().writeFile("Offers.dot", bytes("x"))});
    EXPECT_EQ(number(addIns(), u"Count"), before + 2);
}

TEST_P(WordAddIns, AnAddedOneIsFoundByItsPath) {
    const std::u16string path = person().writeFile("Letters.dot", bytes("x"));
    call(addIns(), u"Add", {path});
    EXPECT_TRUE(addIn(path));
    EXPECT_NE(errorOf([&] { addIn(person().path("Offers.dot")); }).number(), 0);
}

TEST_P(WordAddIns, InstalledIsSwitchedOnAndOff) {
    const std::u16string path = person().writeFile("Letters.dot", bytes("x"));
    const Object added = call(addIns(), u"Add", {path}).toObject();
    ASSERT_TRUE(added);
    put(added, u"Installed", false);
    EXPECT_FALSE(truth(addIn(path), u"Installed"));
    put(addIn(path), u"Installed", true);
    EXPECT_TRUE(truth(addIn(path), u"Installed"));
    EXPECT_TRUE(truth(added, u"Installed"));
}

TEST_P(WordAddIns, EachIsSwitchedByItself) {
    const std::u16string first = person().writeFile("Letters.dot", bytes("x")), second = person().writeFile("Offers.dot", bytes("x"));
    for (const std::u16string& path : {first, second}) call(addIns(), u"Add", {path});
    put(addIn(first), u"Installed", true);
    put(addIn(second), u"Installed", false);
    EXPECT_TRUE(truth(addIn(first), u"Installed"));
    EXPECT_FALSE(truth(addIn(second), u"Installed"));
}

TEST_P(WordAddIns, AreThoseOfEveryDocument) {
    const std::u16string path = person().writeFile("Letters.dot", bytes("x"));
    call(addIns(), u"Add", {path});
    put(addIn(path), u"Installed", true);
    const Object elsewhere = wordOf(host().open(host().htmlItem(u"Dear Jane")).WordEditor());
    EXPECT_TRUE(truth(object(elsewhere, u"AddIns", {path}), u"Installed"));
}

TEST_P(WordAddIns, AreReachedThroughTheHelperOnAGuardedHost) {
    start({.version = u"10.0.0.6515"});
    const Inspector inspector = person().newMail();
    const Object guarded = wordOf(makeSafeInspector(inspector).WordEditor());
    const std::u16string path = person().writeFile("Letters.dot", bytes("x"));
    EXPECT_NE(errorOf([&] { object(guarded, u"AddIns", {path}); }).number(), 0);
    call(object(guarded, u"AddIns"), u"Add", {path});
    put(object(guarded, u"AddIns", {path}), u"Installed", true);
    EXPECT_TRUE(truth(object(guarded, u"AddIns", {path}), u"Installed"));
}

TEST_P(WordAddIns, TheTemplateIsFoundByItsNameAndByAnyPathThatEndsInIt) {
    for (const char16_t* path : {u"\\Lorvane.dot", u"\\lorvane.DOT", u"C:\\Add-ins\\Lorvane.dot", u"c:\\add-ins\\LORVANE.dot"}) {
        EXPECT_TRUE(wordTemplate(path));
        EXPECT_NO_THROW(truth(wordTemplate(path), u"Saved"));
    }
}

TEST_P(WordAddIns, TheTemplateIsMarkedAsSaved) {
    put(wordTemplate(u"\\Lorvane.dot"), u"Saved", false);
    EXPECT_FALSE(truth(wordTemplate(u"\\Lorvane.dot"), u"Saved"));
    put(wordTemplate(u"C:\\Add-ins\\Lorvane.dot"), u"Saved", true);
    EXPECT_TRUE(truth(wordTemplate(u"\\Lorvane.dot"), u"Saved"));
}

TEST_P(WordAddIns, AnUnknownTemplateIsAnError) {
    for (const char16_t* path : {u"\\Letters.dot", u"C:\\Add-ins\\Letters.dot", u""}) {
        EXPECT_NE(errorOf([&] { put(wordTemplate(path), u"Saved", true); }).number(), 0);
    }
}

}  // namespace lorvane::contract
