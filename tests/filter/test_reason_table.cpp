// The reason table: joined entries read as the texts they stand for, equal pairs share an id,
// and the image the record keeps round-trips and refuses bytes that are not one.
#include "engine/reason_table.h"

#include <gtest/gtest.h>

#include <random>

namespace {

// A table with texts, joinings of texts, joinings of joinings and a long chain of prefixes,
// beside the texts they must read as.
struct Sample {
    ReasonTable table;
    std::vector<QString> expected;  // by id

    Sample() {
        expected = {QString(), QString("")};
        const auto add = [&](ReasonTable::Id id, const QString& text) {
            if (id >= expected.size()) expected.resize(id + 1);
            expected[id] = text;
            return id;
        };
        const ReasonTable::Id a = add(table.intern(QStringLiteral("偶数个数大小:2 保留0~0")),
                                      QStringLiteral("偶数个数大小:2 保留0~0"));
        const ReasonTable::Id b = add(table.intern(QStringLiteral("1位奇偶性")), QStringLiteral("1位奇偶性"));
        const ReasonTable::Id ab = add(table.join(a, b), expected[a] + expected[b]);
        const ReasonTable::Id bab = add(table.join(b, ab), expected[b] + expected[ab]);
        add(table.intern(QStringLiteral("上次反选-")), QStringLiteral("上次反选-"));
        ReasonTable::Id chain = bab;
        for (int i = 0; i < 300; ++i)
            chain = add(table.prefixed(QStringLiteral("上次反选-"), chain),
                        QStringLiteral("上次反选-") + expected[chain]);
        add(table.join(ab, bab), expected[ab] + expected[bab]);
        add(table.intern(QStringLiteral("手工删除")), QStringLiteral("手工删除"));
    }
};

}  // namespace

TEST(ReasonTable, JoinedEntriesReadAsTheirTextsAndEqualPairsShareAnId) {
    Sample s;
    ReasonTable& t = s.table;
    ASSERT_EQ(t.size(), s.expected.size());
    for (ReasonTable::Id id = 0; id < t.size(); ++id) EXPECT_EQ(t.text(id), s.expected[id]) << id;
    EXPECT_TRUE(t.text(ReasonTable::kNull).isNull());
    EXPECT_FALSE(t.text(ReasonTable::kEmpty).isNull());

    const ReasonTable::Id a = *t.find(QStringLiteral("偶数个数大小:2 保留0~0"));
    const ReasonTable::Id b = *t.find(QStringLiteral("1位奇偶性"));
    const size_t before = t.size();
    const ReasonTable::Id ab = t.join(a, b);
    EXPECT_EQ(t.join(a, b), ab);
    EXPECT_EQ(t.findJoined(a, b), ab);
    EXPECT_EQ(t.size(), before) << "a pair made before is found, not made again";
    EXPECT_FALSE(t.findJoined(b, a));
    EXPECT_TRUE(t.isJoined(ab));
    EXPECT_FALSE(t.isJoined(a));
    EXPECT_FALSE(t.find(t.text(ab))) << "find() knows texts interned as texts only";

    // A null or empty side reads as nothing, as the concatenation of the statements does.
    EXPECT_EQ(t.join(ReasonTable::kNull, a), a);
    EXPECT_EQ(t.join(a, ReasonTable::kNull), a);
    EXPECT_EQ(t.join(ReasonTable::kEmpty, ab), ab);
    EXPECT_EQ(t.join(ab, ReasonTable::kEmpty), ab);
    EXPECT_EQ(t.join(ReasonTable::kNull, ReasonTable::kEmpty), ReasonTable::kEmpty);
    EXPECT_EQ(t.join(ReasonTable::kNull, ReasonTable::kNull), ReasonTable::kNull);
    const ReasonTable::Id prefix = t.prefixed(QStringLiteral("全部反选-"), ReasonTable::kNull);
    EXPECT_EQ(prefix, t.find(QStringLiteral("全部反选-")));
    EXPECT_EQ(t.size(), before + 1);

    // Many pairs grow the index; each is still found, and reads right (twice: the cache).
    std::vector<ReasonTable::Id> made;
    for (ReasonTable::Id x = 2; x < 200; ++x) made.push_back(t.join(x, b));
    for (ReasonTable::Id x = 2; x < 200; ++x) {
        EXPECT_EQ(t.findJoined(x, b), made[x - 2]);
        EXPECT_EQ(t.text(made[x - 2]), t.text(x) + QStringLiteral("1位奇偶性"));
        EXPECT_EQ(t.text(made[x - 2]), t.text(x) + QStringLiteral("1位奇偶性"));
    }

    const ReasonTable copy = t;
    for (ReasonTable::Id id = 0; id < t.size(); ++id) ASSERT_EQ(copy.text(id), t.text(id));
    t.clear();
    EXPECT_EQ(t.size(), 2u);
    EXPECT_FALSE(t.findJoined(a, b));
}

TEST(ReasonTable, ImageRoundTripsWholeAndFromAnEntry) {
    Sample s;
    ReasonTable& t = s.table;
    ReasonTable loaded;
    ASSERT_TRUE(loaded.appendImage(t.image()));
    ASSERT_EQ(loaded.size(), t.size());
    for (ReasonTable::Id id = 0; id < t.size(); ++id) ASSERT_EQ(loaded.text(id), t.text(id)) << id;
    // The loaded table finds its pairs and texts again instead of making new entries.
    const ReasonTable::Id a = *loaded.find(QStringLiteral("偶数个数大小:2 保留0~0"));
    const ReasonTable::Id b = *loaded.find(QStringLiteral("1位奇偶性"));
    EXPECT_EQ(loaded.join(a, b), *t.findJoined(a, b));
    EXPECT_EQ(loaded.size(), t.size());

    // An action adds entries; the record appends only those to what it loaded before.
    const auto from = static_cast<ReasonTable::Id>(t.size());
    const ReasonTable::Id c = t.intern(QStringLiteral("首尾差值大小:4 保留0~0"));
    t.join(t.join(a, c), t.prefixed(QStringLiteral("全部反选-"), c));
    EXPECT_FALSE(loaded.appendImage(t.image(from), from - 1)) << "the table holds `from` entries";
    ASSERT_TRUE(loaded.appendImage(t.image(from), from));
    ASSERT_EQ(loaded.size(), t.size());
    for (ReasonTable::Id id = from; id < t.size(); ++id) EXPECT_EQ(loaded.text(id), t.text(id)) << id;

    ReasonTable empty;
    EXPECT_TRUE(empty.appendImage(ReasonTable().image()));
    EXPECT_EQ(empty.size(), 2u);
}

// Cut images, ids out of range, repeats and unknown tags are refused, and the table is left as
// it was: it still takes the right image afterwards.
TEST(ReasonTable, DamagedImagesAreRefusedAndLeaveTheTableAsItWas) {
    Sample s;
    const QByteArray good = s.table.image();
    ReasonTable t;
    const QString kept = QStringLiteral("手工删除");
    const auto refused = [&](const QByteArray& bytes, const std::string& what) {
        ReasonTable u;
        EXPECT_FALSE(u.appendImage(bytes)) << what;
        EXPECT_EQ(u.size(), 2u) << what;
        EXPECT_FALSE(u.find(kept)) << what;
        EXPECT_TRUE(u.appendImage(good)) << what << ": the table takes a good image afterwards";
        EXPECT_EQ(u.size(), s.table.size()) << what;
    };
    for (qsizetype n = 0; n < good.size(); n += (n < 64 ? 1 : 97))
        refused(good.left(n), "cut at " + std::to_string(n));
    refused(good + 'T', "a byte past the last entry");

    // The first entries of the sample: two texts, then the pair (2, 3) at id 4.
    const qsizetype pairAt = good.indexOf('J');
    ASSERT_GT(pairAt, 0);
    const auto patched = [&](qsizetype at, char byte) {
        QByteArray b = good;
        b[at] = byte;
        return b;
    };
    refused(patched(pairAt + 1, 4), "a joining that names itself");
    refused(patched(pairAt + 4, 0x7F), "a head id far out of range");
    refused(patched(pairAt + 5, 0), "a tail that is the null");
    refused(patched(pairAt, 'X'), "an unknown tag");
    refused(patched(0, static_cast<char>(good[0] + 1)), "a count above the entries");

    // A text or a pair given twice.
    ReasonTable twice;
    twice.intern(QStringLiteral("甲"));
    QByteArray repeatedText = twice.image();
    repeatedText.append(repeatedText.mid(4));
    repeatedText[0] = 2;
    refused(repeatedText, "a text twice");
    ReasonTable pairs;
    const ReasonTable::Id x = pairs.intern(QStringLiteral("甲"));
    pairs.join(x, pairs.intern(QStringLiteral("乙")));
    QByteArray repeatedPair = pairs.image();
    repeatedPair.append(repeatedPair.right(9));
    repeatedPair[0] = 4;
    refused(repeatedPair, "a pair twice");
    EXPECT_TRUE(t.appendImage(good));
}

// Joinings of an entry with itself double its text: a few hundred bytes of image would stand
// for a text of terabytes, made when a grid shows the row. Such an image is damaged: a text
// may take up to 2^20 characters.
TEST(ReasonTable, ImagesWhoseTextsGrowPastTheLimitAreRefused) {
    constexpr qsizetype kLongest = qsizetype{1} << 20;
    const auto doubled = [](ReasonTable& t, ReasonTable::Id id, int times) {
        for (int i = 0; i < times; ++i) id = t.join(id, id);
        return id;
    };
    ReasonTable longest;
    const ReasonTable::Id last = doubled(longest, longest.intern(QStringLiteral("甲")), 20);
    ReasonTable loaded;
    ASSERT_TRUE(loaded.appendImage(longest.image())) << "a text of the longest length is kept";
    EXPECT_EQ(loaded.text(last).size(), kLongest);

    ReasonTable tooLong;
    doubled(tooLong, tooLong.intern(QStringLiteral("甲")), 40);
    ReasonTable refused;
    EXPECT_FALSE(refused.appendImage(tooLong.image()));
    EXPECT_EQ(refused.size(), 2u);

    // The doubling in a later piece of the image, on entries read before.
    ReasonTable pieces;
    const ReasonTable::Id half = doubled(pieces, pieces.intern(QStringLiteral("乙")), 20);
    const QByteArray firstPiece = pieces.image();
    const auto from = static_cast<ReasonTable::Id>(pieces.size());
    pieces.join(half, half);
    ReasonTable twoPieces;
    ASSERT_TRUE(twoPieces.appendImage(firstPiece));
    EXPECT_FALSE(twoPieces.appendImage(pieces.image(from), from));
    EXPECT_EQ(twoPieces.size(), from);
}

namespace {

// A formula whose text is the sum of the row's numbers, with a mark for rows that were dead.
class SumFormula : public RowFormula {
public:
    explicit SumFormula(int offset) : m_offset(offset) {}
    QString text(std::span<const uint8_t> numbers, bool live) const override {
        int sum = m_offset;
        for (uint8_t n : numbers) sum += n;
        return QStringLiteral("和%1%2").arg(sum).arg(live ? QString() : QStringLiteral("(死)"));
    }
    qsizetype maxTextLength() const override { return 16; }
    QByteArray kind() const override { return "test-sum"; }
    QByteArray payload() const override { return QByteArray::number(m_offset); }
    static std::shared_ptr<const RowFormula> load(const QByteArray& payload) {
        bool ok = false;
        const int offset = payload.toInt(&ok);
        return ok ? std::make_shared<SumFormula>(offset) : nullptr;
    }

private:
    int m_offset;
};

}  // namespace

// A formula's text is made from the row asked about, through any joining that holds it; the
// image keeps the formula and reads it back through its loader, and refuses a formula whose
// kind has no loader or whose loader refuses it.
TEST(ReasonTable, FormulaEntriesReadTheRowAndRoundTripThroughTheirLoader) {
    row_formula::registerLoader("test-sum", &SumFormula::load);
    ReasonTable t;
    const ReasonTable::Id old = t.intern(QStringLiteral("手工删除"));
    const auto sum = std::make_shared<SumFormula>(100);
    const ReasonTable::Id live = t.formula(sum, true);
    const ReasonTable::Id dead = t.formula(sum, false);
    const ReasonTable::Id joined = t.join(old, live);
    const ReasonTable::Id prefixed = t.prefixed(QStringLiteral("上次反选-"), joined);
    const std::array<uint8_t, 7> row{1, 2, 3, 4, 5, 6, 7};
    EXPECT_EQ(t.text(live, row), QStringLiteral("和128"));
    EXPECT_EQ(t.text(dead, row), QStringLiteral("和128(死)"));
    EXPECT_EQ(t.text(prefixed, row), QStringLiteral("上次反选-手工删除和128"));
    EXPECT_EQ(t.text(prefixed), QStringLiteral("上次反选-手工删除")) << "without a row the formula reads as nothing";
    EXPECT_TRUE(t.dependsOnRow(prefixed));
    EXPECT_FALSE(t.dependsOnRow(old));
    EXPECT_EQ(t.join(old, live), joined) << "joinings of a formula are shared as any others";

    ReasonTable loaded;
    ASSERT_TRUE(loaded.appendImage(t.image()));
    ASSERT_EQ(loaded.size(), t.size());
    for (ReasonTable::Id id = 0; id < t.size(); ++id) EXPECT_EQ(loaded.text(id, row), t.text(id, row)) << id;

    const QByteArray good = t.image();
    const auto withPayload = [&](const QByteArray& from, const QByteArray& to) {
        QByteArray b = good;
        const qsizetype at = b.indexOf(from);
        b.replace(at, from.size(), to);
        return b;
    };
    ReasonTable refused;
    EXPECT_FALSE(refused.appendImage(withPayload("test-sum", "test-sux"))) << "a kind without a loader";
    EXPECT_FALSE(refused.appendImage(withPayload(QByteArray("test-sum\0" "100", 12), QByteArray("test-sum\0" "1x0", 12))))
        << "a payload the loader refuses";
    EXPECT_EQ(refused.size(), 2u);
    EXPECT_TRUE(refused.appendImage(good));
}
