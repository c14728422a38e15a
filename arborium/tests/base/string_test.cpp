#include <arborium/base/KbName.h>
#include <arborium/base/KbPList.h>
#include <arborium/base/KbString.h>
#include <arborium/base/KbStringList.h>

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <limits>
#include <sstream>
#include <thread>
#include <unordered_set>
#include <utility>

TEST(String, isSmall) { EXPECT_LE(sizeof(KbString), 40u); }

// shows: KbString, KbString::fromUtf16, KbString::isUnicode, KbString::makeEmpty
TEST(String, saysWhichKindItIs)
{
    EXPECT_FALSE(KbString("abc").isUnicode());
    EXPECT_FALSE(KbString("\xe9").isUnicode());
    EXPECT_TRUE(KbString(u"abc").isUnicode());
    EXPECT_TRUE(KbString(std::u16string(u"\u03b1")).isUnicode());
    EXPECT_TRUE(KbString::fromUtf16(u"").isUnicode());
    EXPECT_FALSE(KbString::fromUtf8("caf\xc3\xa9").isUnicode());
    EXPECT_TRUE(KbString::fromUtf8("\xce\xb1").isUnicode());
    KbString text("abc");
    text += KbString(u"\u03b1");
    EXPECT_TRUE(text.isUnicode());
    text.makeEmpty();
    EXPECT_FALSE(text.isUnicode());
    EXPECT_TRUE(text.isEmpty());
}

// shows: KbString::operator<, KbString::hash
TEST(String, ofBothKindsWithTheSameCharactersIsEqual)
{
    const KbString latin1("caf\xe9"), unicode(u"caf\u00e9"), other(u"caf\u03b1");
    EXPECT_EQ(latin1, unicode);
    EXPECT_EQ(unicode, latin1);
    EXPECT_EQ(latin1.hash(), unicode.hash());
    EXPECT_NE(latin1.hash(), KbString("tea").hash());
    EXPECT_EQ(unicode, "caf\xe9");
    EXPECT_NE(other, KbString("caf?"));
    EXPECT_NE(other, "caf?");
    EXPECT_NE(KbString("caf?"), other);
    EXPECT_LT(latin1, other);
    EXPECT_FALSE(latin1 < unicode);
    EXPECT_LE(latin1, unicode);
    EXPECT_GT(KbString("\xe9"), KbString("z"));
}

// shows: KbString::isEmpty
TEST(String, ofNullIsEmpty)
{
    EXPECT_TRUE(KbString(static_cast<const char*>(nullptr)).isEmpty());
    EXPECT_TRUE(KbString(static_cast<const char16_t*>(nullptr)).isEmpty());
    KbString text("a");
    EXPECT_FALSE(text.isEmpty());
    text += static_cast<const char*>(nullptr);
    EXPECT_EQ(text, "a");
    EXPECT_EQ(KbString(), static_cast<const char*>(nullptr));
}

// shows: KbString::toLatin1, KbString::getString, KbString::operator[]
TEST(String, losesInLatin1OnlyWhatLatin1Lacks)
{
    const KbString text(u"a\u00e9\u03b1z");
    EXPECT_EQ(text.toLatin1(), "a\xe9?z");
    EXPECT_EQ(KbString(u"\u03b1!").toLatin1(), "?!") << "of a text that is not kept";
    EXPECT_STREQ(text.getString(), "a\xe9?z");
    EXPECT_EQ(text.getLength(), 4);
    EXPECT_EQ(text.toUtf16(), u"a\u00e9\u03b1z");
    EXPECT_EQ(text[2], u'\u03b1');
    EXPECT_EQ(text[4], 0);
    EXPECT_EQ(text[-1], 0);
    EXPECT_EQ(KbString("\xe9")[0], 0xe9);
}

// shows: KbString::toUtf8, KbString::getLength
TEST(String, goesThroughUtf8Unchanged)
{
    for (const char* utf8 : {"", "plain", "caf\xc3\xa9", "\xce\xb1\xce\xb2", "\xf0\x9f\x98\x80!"})
        EXPECT_EQ(KbString::fromUtf8(utf8).toUtf8(), utf8);
    EXPECT_EQ(KbString::fromUtf8("\xf0\x9f\x98\x80").getLength(), 2);
    EXPECT_EQ(KbString("\xe9").toUtf8(), "\xc3\xa9");
}

// shows: KbString::fromUtf8, KbString::toUtf16
TEST(String, replacesBytesThatAreNoUtf8)
{
    for (const char* bad :
         {"\xff", "\xc3", "\xc0\x80", "\xed\xa0\x80", "\xf5\x80\x80\x80", "\xe2\x82"})
        EXPECT_EQ(KbString::fromUtf8(std::string(bad) + "z").toUtf16().back(), u'z') << bad;
    EXPECT_EQ(KbString::fromUtf8("a\xffz").toUtf16(), u"a\ufffdz");
    const char16_t half[] = {0xd83d, 'x', 0};
    EXPECT_EQ(KbString(half).toUtf8(), "\xef\xbf\xbdx");
}

// shows: KbString::getSubString
TEST(String, givesTheCharactersBeforeTheEnd)
{
    for (const KbString& text : {KbString("abcdef"), KbString(u"abcdef")}) {
        EXPECT_EQ(text.getSubString(1, 3), "bc");
        EXPECT_EQ(text.getSubString(2), "cdef");
        EXPECT_EQ(text.getSubString(2, -1), "cdef");
        EXPECT_EQ(text.getSubString(0, 0), "");
        EXPECT_EQ(text.getSubString(-5, 2), "ab");
        EXPECT_EQ(text.getSubString(4, 100), "ef");
        EXPECT_EQ(text.getSubString(100, 200), "");
        EXPECT_EQ(text.getSubString(4, 2), "");
        EXPECT_EQ(text.getSubString(1, 3).isUnicode(), text.isUnicode());
        for (int i = 0; i <= text.getLength(); ++i)
            EXPECT_EQ(text.getSubString(0, i) + text.getSubString(i, -1), text);
    }
    EXPECT_EQ(KbString("abcdef", 1, 3), "bc");
    EXPECT_EQ(KbString("abcdef", 2, -1), "cdef");
    EXPECT_EQ(KbString("abcdef", 2, 99), "cdef");
    EXPECT_EQ(KbString("abcdef", 99, -1), "");
    EXPECT_EQ(KbString(static_cast<const char*>(nullptr), 1, 3), "");
}

// shows: KbString::find, KbString::rfind, KbString::startsWith, KbString::endsWith
TEST(String, findsTextsOfBothKinds)
{
    for (const KbString& text : {KbString("abcabc"), KbString(u"abcabc")}) {
        for (const KbString& part : {KbString("bc"), KbString(u"bc")}) {
            EXPECT_EQ(text.find(part), 1);
            EXPECT_EQ(text.find(part, 2), 4);
            EXPECT_EQ(text.find(part, 99), KbString::npos);
            EXPECT_EQ(text.find(part, -3), 1);
            EXPECT_EQ(text.rfind(part), 4);
        }
        EXPECT_EQ(text.find(KbString(u"\u03b1")), KbString::npos);
        EXPECT_EQ(text.find(""), 0);
    }
    // The stand-in for what Latin-1 lacks is not that character.
    EXPECT_EQ(KbString("?").find(KbString(u"\u03b1")), KbString::npos);
    EXPECT_EQ(KbString(u"\u03b1").find("?"), KbString::npos);
    EXPECT_TRUE(KbString("abc").startsWith("ab"));
    EXPECT_TRUE(KbString("abc").endsWith("bc"));
    EXPECT_FALSE(KbString("c").endsWith("bc"));
    EXPECT_FALSE(KbString("abc").startsWith("b"));
    EXPECT_FALSE(KbString("ab").startsWith("abc"));
    EXPECT_TRUE(KbString("a").startsWith(""));
    EXPECT_TRUE(KbString(u"\u03b1b").startsWith(KbString(u"\u03b1")));
    EXPECT_EQ(KbString("ab").find("", 2), 2);
    EXPECT_EQ(KbString("ab").rfind("c"), KbString::npos);
}

// shows: KbString::operator=, KbString::operator+=, KbString::operator+
TEST(String, joinsWithItselfAndWithOthers)
{
    KbString text("ab");
    text += text;
    EXPECT_EQ(text, "abab");
    text += text.getString();
    EXPECT_EQ(text, "abababab");
    KbString wide(u"\u03b1");
    wide += wide;
    wide += wide.getString();
    EXPECT_EQ(wide.toUtf16(), u"\u03b1\u03b1??");
    EXPECT_EQ("x" + KbString("y") + "z" + '!', "xyz!");
    EXPECT_EQ((KbString("x") + KbString(u"\u03b1") + "\xe9").toUtf16(), u"x\u03b1\u00e9");
    text = "new";
    EXPECT_EQ(text, "new");
    KbString moved(std::move(wide));
    EXPECT_EQ(moved.getLength(), 4);
    text = moved;
    text = *&text;
    EXPECT_EQ(text, moved);
}

// shows: KbString::setNum
TEST(String, writesAndReadsNumbers)
{
    KbString text;
    EXPECT_EQ(text.setNum(255, 16), "ff");
    EXPECT_EQ(text.setNum(-42), "-42");
    EXPECT_EQ(text.setNum(INT_MIN), "-2147483648");
    EXPECT_EQ(text.setNum(7, 99), "7");
    EXPECT_EQ(text.setNum(4000000000u), "4000000000");
    EXPECT_EQ(text.setNum(0.1f), "0.1");
    EXPECT_EQ(text.setNum(2.5e-9), "2.5e-09");
    EXPECT_EQ(text.setNum(255u, 2), "11111111");
    EXPECT_EQ(KbString(17), "17");
    EXPECT_EQ(KbString('x'), "x");
}

// shows: KbString::toInt, KbString::toFloat
TEST(String, readsTheLeadingNumber)
{
    bool ok = false;
    EXPECT_EQ(KbString("  12abc").toInt(&ok), 12);
    EXPECT_TRUE(ok);
    EXPECT_EQ(KbString("3.7").toInt(), 3);
    EXPECT_EQ(KbString("+5").toInt(), 5);
    EXPECT_EQ(KbString("junk").toInt(&ok), 0);
    EXPECT_FALSE(ok);
    EXPECT_EQ(KbString("").toInt(&ok), 0);
    EXPECT_FALSE(ok);
    EXPECT_EQ(KbString("99999999999999999999").toInt(&ok), INT_MAX);
    EXPECT_TRUE(ok);
    EXPECT_EQ(KbString("-99999999999").toInt(), INT_MIN);
    EXPECT_EQ(KbString(u"42").toInt(), 42);

    EXPECT_EQ(KbString(" -2.5e1kg").toFloat(&ok), -25.0f);
    EXPECT_TRUE(ok);
    EXPECT_EQ(KbString("3,7").toFloat(), 3.0f);
    EXPECT_EQ(KbString(".5").toFloat(), 0.5f);
    EXPECT_EQ(KbString("1e").toFloat(), 1.0f);
    EXPECT_EQ(KbString("1e99").toFloat(), std::numeric_limits<float>::max());
    EXPECT_EQ(KbString("-1e99x").toFloat(), -std::numeric_limits<float>::max());
    EXPECT_EQ(KbString("1e-99").toFloat(&ok), 0.0f);
    EXPECT_TRUE(ok);
    for (const char* junk : {"inf", "nan", "-inf", ".", "-", "+", "+-1", "e5", ""}) {
        EXPECT_EQ(KbString(junk).toFloat(&ok), 0.0f) << junk;
        EXPECT_FALSE(ok) << junk;
    }
}

// shows: KbString::toString_l
TEST(String, formatsNumbersByAFormatOfTheirKind)
{
    EXPECT_EQ(KbString::toString_l("%.3f", 1.5), "1.500");
    EXPECT_EQ(KbString::toString_l("[%d%%]", 40), "[40%]");
    EXPECT_EQ(KbString::toString_l(KbString("%5d"), 40), "   40");
    EXPECT_EQ(KbString::toString_l(KbString("%.1f"), 0.25), "0.2");
    // What is refused, or is for the other kind, falls back.
    EXPECT_EQ(KbString::toString_l("%s%n", 1.5, "%.2f"), "1.50");
    EXPECT_EQ(KbString::toString_l("%d", 1.5, "%.3f"), "1.500");
    EXPECT_EQ(KbString::toString_l("%f", 7), "7");
    EXPECT_EQ(KbString::toString_l(static_cast<const char*>(nullptr), 7, nullptr), "7");
    EXPECT_EQ(KbString::toString_l("%n", 0.5, "%p"), "0.5");
}

TEST(String, isAKeyOfHashTables)
{
    const std::unordered_set<KbString> set{KbString("a"), KbString(u"\u03b1")};
    EXPECT_EQ(set.count(KbString(u"a")), 1u);
    EXPECT_EQ(set.count(KbString("?")), 0u);
}

// shows: KbStringList, KbStringList::split
TEST(StringList, splitsAtEachSeparator)
{
    const auto joined = [](const KbStringList& list) {
        std::string text;
        for (const KbString& piece : list) text += "<" + piece.toUtf8() + ">";
        return text;
    };
    EXPECT_EQ(joined(KbStringList::split("a;b;;c", ";")), "<a><b><><c>");
    EXPECT_EQ(joined(KbStringList::split(";", ";")), "<><>");
    EXPECT_EQ(joined(KbStringList::split("", ";")), "<>");
    EXPECT_EQ(joined(KbStringList::split("abc", "")), "<abc>");
    EXPECT_EQ(joined(KbStringList::split("a--b-c", "--")), "<a><b-c>");
    EXPECT_EQ(joined(KbStringList::split(u"\u03b1\n\u03b2", "\n")), "<\xce\xb1><\xce\xb2>");
}

// shows: KbStringList::append, KbStringList::insert, KbStringList::remove, KbStringList::truncate,
// KbStringList::getLength, KbStringList::find, KbStringList::get, KbStringList::operator[]
TEST(StringList, bearsBadPositions)
{
    KbStringList list;
    list.append("a");
    list.append("b");
    EXPECT_EQ(list[5], "");
    EXPECT_EQ(list.get(1), "b");
    EXPECT_EQ(std::as_const(list)[0], "a");
    EXPECT_EQ(std::as_const(list)[2], "");
    list[-1] = "lost";
    EXPECT_EQ(list[-1], "");
    EXPECT_EQ(list.get(7), "");
    list.remove(9);
    list.insert("c", 99);
    list.insert("first", -1);
    EXPECT_EQ(list.getLength(), 4);
    EXPECT_EQ(list[0], "first");
    EXPECT_EQ(list.find("c"), 3);
    EXPECT_EQ(list.find("d"), -1);
    list[1] = "A";
    list.remove(2);
    EXPECT_EQ(list[2], "c") << "it has moved up";
    list.truncate(3); // is not longer
    list.truncate(2);
    EXPECT_EQ(list.getLength(), 2);
    EXPECT_EQ(list[1], "A");
    list.truncate(-1);
    EXPECT_EQ(list.getLength(), 0);
}

// shows: KbName::getString, KbName::getLength, KbName::operator<
TEST(Name, isOnePointerPerText)
{
    const KbName a("topSeparator"), b(std::string("topSeparator")), c(KbString("topSeparator"));
    EXPECT_EQ(a, b);
    EXPECT_EQ(a.getString(), b.getString());
    EXPECT_STREQ(a.getString(), "topSeparator");
    EXPECT_EQ(a, c);
    EXPECT_NE(a, KbName("geomSeparator"));
    EXPECT_EQ(a, "topSeparator");
    EXPECT_NE(a, "top");
    EXPECT_EQ(a.getLength(), 12);
    EXPECT_LT(KbName("a"), KbName("b"));
    EXPECT_FALSE(KbName("b") < KbName("a"));
    EXPECT_FALSE(KbName("a") < KbName("a"));
}

// shows: KbName, KbName::isEmpty, KbName::operator!
TEST(Name, ofNothingIsEmpty)
{
    EXPECT_TRUE(KbName().isEmpty());
    EXPECT_TRUE(!KbName(""));
    EXPECT_FALSE(KbName("a").isEmpty());
    EXPECT_FALSE(!KbName("a"));
    EXPECT_EQ(KbName(static_cast<const char*>(nullptr)), KbName());
    EXPECT_STREQ(KbName().getString(), "");
    EXPECT_EQ(KbName(), "");
    EXPECT_EQ(KbName(std::string("ab\0c", 4)), "ab");
}

// shows: KbName::findExisting
TEST(Name, isNotMadeByLookingForIt)
{
    EXPECT_TRUE(KbName::findExisting("never made before").isEmpty());
    EXPECT_TRUE(KbName::findExisting("never made before").isEmpty());
    const KbName made("never made before");
    EXPECT_EQ(KbName::findExisting("never made before"), made);
    EXPECT_EQ(KbName::findExisting(std::string_view("never made before\0x", 19)), made);
    EXPECT_TRUE(KbName::findExisting("").isEmpty());
}

TEST(Name, isTheSameInAllThreads)
{
    KbName names[4][50];
    std::vector<std::thread> threads;
    for (auto& row : names)
        threads.emplace_back([&row] {
            for (int i = 0; i < 50; ++i) row[i] = KbName("shared" + std::to_string(i));
        });
    for (std::thread& thread : threads) thread.join();
    for (int i = 0; i < 50; ++i)
        for (const auto& row : names) EXPECT_EQ(row[i], names[0][i]);
}

// shows: KbName::isIdentifier
TEST(Name, knowsWhatAFileTakesForOne)
{
    EXPECT_TRUE(KbName::isIdentifier("frame_2"));
    EXPECT_TRUE(KbName::isIdentifier("_x"));
    for (const char* bad : {"", "2x", "a b", "a.b", "a{", "a\"b", "a+1", "a#", "a\n"})
        EXPECT_FALSE(KbName::isIdentifier(bad)) << bad;
}

// shows: KbPList, KbPList::append, KbPList::insert, KbPList::find, KbPList::get,
// KbPList::operator[], KbPList::getLength, KbPList::remove, KbPList::removeItem,
// KbPList::truncate, KbPList::copy
TEST(PointerList, keepsItsOrder)
{
    int things[4];
    KbPList list(100); // which is room, not length
    EXPECT_EQ(list.getLength(), 0);
    list.append(&things[0]);
    list.append(&things[2]);
    list.insert(&things[1], 1);
    list.insert(&things[3], 99);
    EXPECT_EQ(list.getLength(), 4);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(list.get(i), &things[i]);
        EXPECT_EQ(std::as_const(list)[i], &things[i]);
        EXPECT_EQ(list.find(&things[i]), i);
    }
    list.remove(0);
    list.removeItem(&things[2]);
    EXPECT_EQ(list.getLength(), 2);
    EXPECT_EQ(list.get(0), &things[1]) << "it has moved up";
    EXPECT_EQ(list.find(&things[0]), -1);
    list.removeItem(&things[0]); // is not there
    EXPECT_EQ(list.getLength(), 2);
    KbPList copy;
    copy.copy(list);
    EXPECT_EQ(copy, list);
    copy.truncate(1);
    EXPECT_NE(copy, list);
    copy.truncate(5);
    EXPECT_EQ(copy.getLength(), 1);
}

// shows: KbPList::set, KbPList::operator[]
TEST(PointerList, bearsBadPositions)
{
    int thing;
    KbPList list;
    EXPECT_EQ(list.get(0), nullptr);
    EXPECT_EQ(list.get(-1), nullptr);
    list.remove(0);
    list.remove(-1);
    list.insert(&thing, -7);
    EXPECT_EQ(list[0], &thing);
    list[3] = &thing;
    EXPECT_EQ(list.getLength(), 4);
    EXPECT_EQ(list[2], nullptr);
    list.set(2, &thing);
    EXPECT_EQ(list[2], &thing);
    EXPECT_EQ(std::as_const(list)[4], nullptr);
    EXPECT_EQ(KbPList(-5).getLength(), 0);
    list[-1] = &thing;
    EXPECT_EQ(list[-1], nullptr);
    list[INT_MAX] = &thing;
    list.set(INT_MAX, &thing);
    list.set(-1, &thing);
    EXPECT_EQ(list.getLength(), 4);
    list.truncate(-3);
    EXPECT_EQ(list.getLength(), 0);
}
