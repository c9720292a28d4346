// The member index on outlines of unique names: what a lookup answers, how
// chains of several owners are filtered, and that the index follows adds and
// deletes across table generations.
#include <gtest/gtest.h>

#include <string>

#include "handtree.h"
#include "extendedhash.h"
#include "hashCWrapper.h"
#include "mbrId2pItemMapWrapper.h"
#include "otlHashItemsFactoryWrapper.h"

using idxtest::Found;
using idxtest::HandOutline;

namespace {

// Year (Qtr1 (Jan, Feb), Qtr2 (Apr)), Product (Cola, Diet)
struct Basic : HandOutline {
    VTX_POTLMBR_T year, qtr1, jan, feb, qtr2, apr, product, cola, diet;
    explicit Basic(bool caseSensitive = false) : HandOutline(VTX_NAMES_UNIQUE, caseSensitive, 1000, 2) {
        year = dim("Year");
        qtr1 = add(year, "Qtr1");
        jan = add(qtr1, "Jan");
        feb = add(qtr1, "Feb");
        qtr2 = add(year, "Qtr2");
        apr = add(qtr2, "Apr");
        product = dim("Product");
        cola = add(product, "Cola");
        diet = add(product, "Diet");
    }
};

TEST(IndexFind, NamesAliasesAndAbsence) {
    Basic b;
    EXPECT_EQ(b.byName("Jan").m, b.jan);
    EXPECT_EQ(b.byName("Year").m, b.year);
    EXPECT_EQ(b.byName("jAN").m, b.jan);  // case is folded
    Found none = b.byName("Mar");
    EXPECT_EQ(none.sts, 0);
    EXPECT_EQ(none.m, nullptr);
    EXPECT_EQ(b.byName("").m, nullptr);
    // An alias entered with the member is found in its table only.
    VTX_POTLMBR_T fanta = b.add(b.product, "Fanta", VTX_SHARE_STORE, false);
    b.setAlias(fanta, 1, "Orange");
    b.setAlias(fanta, 2, "Naranja");
    ASSERT_EQ(otlHashAddItem(b.ctx(), b.o, fanta, fanta, OTL_HASH_NONE, OTL_HASH_NONE), 0);
    EXPECT_EQ(b.byAlias("Orange", 1).m, fanta);
    EXPECT_EQ(b.byAlias("Orange", 2).m, nullptr);
    EXPECT_EQ(b.byAlias("Naranja", 2).m, fanta);
    EXPECT_EQ(b.byName("Orange").m, nullptr);
    EXPECT_EQ(b.byNameOrAlias("Orange").m, fanta);
    EXPECT_EQ(b.byNameOrAlias("Fanta").m, fanta);
}

TEST(IndexFind, NameOfOneIsAliasOfAnother) {
    Basic b;
    // "Cola" is a member's name and, from now on, Diet's alias: one chain of
    // two owners.
    ASSERT_EQ(otlHashDeleteItem(b.ctx(), b.o, b.diet), 0);
    b.setAlias(b.diet, 1, "Cola");
    ASSERT_EQ(otlHashAddItem(b.ctx(), b.o, b.diet, b.diet, OTL_HASH_NONE, OTL_HASH_NONE), 0);
    EXPECT_EQ(b.byName("Cola").m, b.cola);
    EXPECT_EQ(b.byAlias("Cola", 1).m, b.diet);
    // Asked for a name or any alias, the first owner on the chain answers.
    EXPECT_EQ(b.byNameOrAlias("Cola").m, b.cola);
    // The alias is taken in its table, the name as a name.
    EXPECT_TRUE(otlHashIsStringExist(b.ctx(), b.o, "Cola", 1, nullptr, nullptr));
    EXPECT_TRUE(otlHashIsStringExist(b.ctx(), b.o, "Cola", 0, nullptr, nullptr));
    EXPECT_FALSE(otlHashIsStringExist(b.ctx(), b.o, "Cola", 2, nullptr, nullptr));
    // Taking the name out leaves the alias.
    ASSERT_EQ(otlHashDeleteString(b.ctx(), b.o, b.cola, "Cola", 0), 0);
    EXPECT_EQ(b.byName("Cola").m, nullptr);
    EXPECT_EQ(b.byAlias("Cola", 1).m, b.diet);
}

TEST(IndexFind, CaseSensitiveOutlineTellsSpellingsApart) {
    Basic b(true);
    VTX_POTLMBR_T upper = b.add(b.qtr2, "APR");
    // Both spellings hang on one chain; each query finds its own.
    EXPECT_EQ(b.byName("Apr").m, b.apr);
    EXPECT_EQ(b.byName("APR").m, upper);
    EXPECT_EQ(b.byName("apr").m, nullptr);
    EXPECT_TRUE(otlHashIsStringExist(b.ctx(), b.o, "APR", 0, nullptr, nullptr));
    EXPECT_FALSE(otlHashIsStringExist(b.ctx(), b.o, "aPr", 0, nullptr, nullptr));
    // A delete takes the exact spelling only.
    EXPECT_EQ(otlHashDeleteString(b.ctx(), b.o, upper, "Apr", 0), 1);
    ASSERT_EQ(otlHashDeleteString(b.ctx(), b.o, upper, "APR", 0), 0);
    EXPECT_EQ(b.byName("APR").m, nullptr);
    EXPECT_EQ(b.byName("Apr").m, b.apr);
}

TEST(IndexFind, SharedMembersByOption) {
    Basic b;
    VTX_POTLMBR_T shared = b.add(b.product, "Jan", VTX_SHARE_SHARED);
    VTX_POTLMBR_T shared9 = b.add(b.qtr2, "Jan", VTX_SHARE_SHARED2);
    EXPECT_EQ(b.byName("Jan", OTL_OPT_UNSHARED).m, b.jan);
    EXPECT_EQ(b.byName("Jan", OTL_OPT_SHARED3).m, shared);
    EXPECT_EQ(b.byName("Jan", OTL_OPT_SHARED9).m, shared9);
    EXPECT_EQ(b.byName("Jan", OTL_OPT_SHARED3, b.year).m, nullptr);
    EXPECT_EQ(b.byName("Jan", OTL_OPT_ALL, b.product).m, shared);
    // A copy of share state 3 does not take the name; one of state 9 does.
    ASSERT_EQ(otlHashDeleteItem(b.ctx(), b.o, b.jan), 0);
    ASSERT_EQ(otlHashDeleteItem(b.ctx(), b.o, shared9), 0);
    EXPECT_FALSE(otlHashIsStringExist(b.ctx(), b.o, "Jan", 0, nullptr, nullptr));
    ASSERT_EQ(otlHashAddItem(b.ctx(), b.o, shared9, shared9, OTL_HASH_NONE, OTL_HASH_NONE), 0);
    EXPECT_TRUE(otlHashIsStringExist(b.ctx(), b.o, "Jan", 0, nullptr, nullptr));
}

TEST(IndexFind, ParentAndDimensionFilters) {
    Basic b;
    EXPECT_EQ(b.byName("Jan", OTL_OPT_UNSHARED, nullptr, "Qtr1").m, b.jan);
    EXPECT_EQ(b.byName("Jan", OTL_OPT_UNSHARED, nullptr, "qtr1").m, b.jan);
    EXPECT_EQ(b.byName("Jan", OTL_OPT_UNSHARED, nullptr, "Qtr2").m, nullptr);
    EXPECT_EQ(b.byName("Qtr1", OTL_OPT_UNSHARED, nullptr, "Year").m, b.qtr1);
    // A dimension's parent is the root, which never answers to a name.
    EXPECT_EQ(b.byName("Year", OTL_OPT_UNSHARED, nullptr, b.o->pHeadItem->MbrInfo.szMember).m, nullptr);
    EXPECT_EQ(b.byName("Jan", OTL_OPT_UNSHARED, b.year).m, b.jan);
    EXPECT_EQ(b.byName("Jan", OTL_OPT_UNSHARED, b.product).m, nullptr);
}

TEST(IndexFind, UnknownTextThatReadsAsAPath) {
    Basic b;
    EXPECT_EQ(b.byName("[Year].[Qtr1].[Jan]").m, b.jan);
    EXPECT_EQ(b.byName("[Qtr1].[Feb]").m, b.feb);
    EXPECT_EQ(b.byName("[Year]@[Apr]").m, b.apr);
    EXPECT_EQ(b.byName("[Product]@[Apr]").m, nullptr);
    EXPECT_EQ(b.byName("[Qtr2].[Jan]").m, nullptr);
    // Texts that only look like paths are unknown names, not errors.
    for (const char *text : {"[Year", "[Year].Qtr1", "[Year]x", "[Year].[Qtr1"}) {
        Found f = b.byName(text);
        EXPECT_EQ(f.sts, 0) << text;
        EXPECT_EQ(f.m, nullptr) << text;
    }
    // A member whose own name looks like a path is found by that name.
    VTX_POTLMBR_T odd = b.add(b.product, "[Year].[Qtr1]");
    EXPECT_EQ(b.byName("[Year].[Qtr1]").m, odd);
}

TEST(IndexFind, TypedAttributeAnswersByShortNameOnlyAsAttribute) {
    HandOutline h(VTX_NAMES_UNIQUE, false, 1000);
    h.o->AttrSpecs.usUseNameOf = 1;
    VTX_POTLMBR_T size = h.dim("Size");
    VTX_POTLMBR_T big = h.add(size, "Size_10", VTX_SHARE_STORE, false);
    VTX_POTLMBRLARGE_T lb = OTL_LARGE(big);
    lb->MbrInfo.usCategory = VTX_CAT_ATTRIBUTE;
    lb->MbrInfo.Attribute.usDataType = VTX_ATTR_NUMERIC;
    lb->MbrInfo.Attribute.value.dblValue = 10;
    ASSERT_EQ(otlStrdup(h.ctx(), "10", &lb->Map.AttrMbr.pszShortName), 0);
    ASSERT_EQ(otlHashAddItem(h.ctx(), h.o, big, big, OTL_HASH_NONE, OTL_HASH_NONE), 0);
    EXPECT_EQ(h.byName("Size_10").m, big);
    EXPECT_EQ(h.byName("10").m, nullptr);
    VTX_EXTENDED_HASH_IT_BUF_T buf;
    HASH_NUM_T num = NODE_INDEX_DEL;
    HASH_POS_T pos = NODE_INDEX_DEL;
    ASSERT_EQ(extendedHashGetPos(h.o->pExtendedHashTable, "10", &num, &pos), 0);
    ASSERT_EQ(extendedHashInitIterator(h.o->pExtendedHashTable, &buf, num, pos), 0);
    VTX_POTLMBR_T attr = nullptr;
    ASSERT_EQ(otlFindAttributeMember(h.o, "10", &attr, &buf), 0);
    EXPECT_EQ(attr, big);
    // Both strings leave with the member.
    ASSERT_EQ(otlHashDeleteItem(h.ctx(), h.o, big), 0);
    EXPECT_EQ(otlHashCountEntries(h.o), 1u);
    // A text-valued attribute member is found by its name.
    VTX_POTLMBR_T red = h.add(size, "Red", VTX_SHARE_STORE, false);
    OTL_LARGE(red)->MbrInfo.usCategory = VTX_CAT_ATTRIBUTE;
    OTL_LARGE(red)->MbrInfo.Attribute.usDataType = VTX_ATTR_STRING;
    ASSERT_EQ(otlHashAddItem(h.ctx(), h.o, red, red, OTL_HASH_NONE, OTL_HASH_NONE), 0);
    EXPECT_EQ(h.byName("Red").m, red);
}

TEST(IndexFind, LookupPositionServesTheInsert) {
    Basic b;
    VTX_POTLMBR_T mar = b.add(b.qtr1, "Mar", VTX_SHARE_STORE, false);
    VTX_POTLMBR_T found = nullptr;
    HASH_NUM_T num = 0;
    HASH_POS_T pos = 0;
    ASSERT_EQ(otlHashFindItemByName(b.ctx(), b.o, "Mar", nullptr, 1, 1, 1, 0, nullptr, &found, &num, &pos), 0);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(num, NODE_INDEX_NA);  // absent, with the slot to take
    ASSERT_EQ(otlHashAddItem(b.ctx(), b.o, mar, mar, num, pos), 0);
    EXPECT_EQ(b.byName("Mar").m, mar);
    // A text present in another spelling gives its chain to chain onto.
    Basic cs(true);
    VTX_POTLMBR_T upper = cs.add(cs.qtr1, "JAN", VTX_SHARE_STORE, false);
    ASSERT_EQ(otlHashFindItemByName(cs.ctx(), cs.o, "JAN", nullptr, 1, 1, 1, 0, nullptr, &found, &num, &pos), 0);
    EXPECT_EQ(found, nullptr);
    EXPECT_NE(num, NODE_INDEX_NA);
    ASSERT_EQ(otlHashAddItem(cs.ctx(), cs.o, upper, upper, num, pos), 0);
    EXPECT_EQ(cs.byName("JAN").m, upper);
    EXPECT_EQ(cs.byName("Jan").m, cs.jan);
}

TEST(IndexDelete, AbsentTextChangesNothing) {
    Basic b;
    const auto before = b.snapshot();
    EXPECT_EQ(otlHashDeleteString(b.ctx(), b.o, b.jan, "Mar", 0), 1);
    EXPECT_EQ(otlHashDeleteString(b.ctx(), b.o, b.jan, "Feb", 0), 1);  // there, but not Jan's
    EXPECT_EQ(otlHashDeleteString(b.ctx(), b.o, b.jan, "Jan", 1), 1);  // Jan's, but not an alias
    EXPECT_EQ(b.snapshot(), before);
}

TEST(IndexDelete, TreeTakesSiblingsAndSubtrees) {
    Basic b;
    ASSERT_EQ(otlHashDeleteItemTree(b.ctx(), b.o, b.qtr1), 0);
    // Qtr1, its children, and Qtr2 behind it with its child.
    for (const char *gone : {"Qtr1", "Jan", "Feb", "Qtr2", "Apr"}) EXPECT_EQ(b.byName(gone).m, nullptr) << gone;
    for (const char *kept : {"Year", "Product", "Cola", "Diet"}) EXPECT_NE(b.byName(kept).m, nullptr) << kept;
    EXPECT_EQ(otlHashCountEntries(b.o), 4u);
    // And back, as a reader would rebuild them.
    ASSERT_EQ(otlHashAddItemTree(b.ctx(), b.o, b.qtr1), 0);
    ASSERT_EQ(otlHashAddItemTree(b.ctx(), b.o, b.qtr2), 0);
    EXPECT_EQ(b.byName("Apr").m, b.apr);
    EXPECT_EQ(otlHashCountEntries(b.o), 9u);
}

TEST(IndexDelete, MapSlotFollowsTheMember) {
    Basic b;
    const VTX_ULONG_T dimId = b.o->dimIds[b.jan->ulDimno - 1];
    EXPECT_EQ(memNum2pItemMapGetPItem(b.o, static_cast<VTX_ULONG_T>(b.jan->mbrId), dimId), b.jan);
    int calls = 0;
    static int *pCalls;
    pCalls = &calls;
    b.o->cbDeleteMember = [](VTX_POTL_T, VTX_POTLMBR_T, VTX_ULONG_T h) { *pCalls += static_cast<int>(h); };
    b.jan->ulHdl32 = 5;
    ASSERT_EQ(otlHashDeleteItem(b.ctx(), b.o, b.jan), 0);
    EXPECT_EQ(memNum2pItemMapGetPItem(b.o, static_cast<VTX_ULONG_T>(b.jan->mbrId), dimId), nullptr);
    EXPECT_EQ(calls, 5);
    // A member never entered has no entries to take.
    EXPECT_EQ(otlHashDeleteItem(b.ctx(), b.o, b.jan), 1);
    b.o->cbDeleteMember = nullptr;
}

// Far more strings than the index was sized for: every name stays findable
// through each added table generation, and deletes and re-adds in old
// generations work.
TEST(IndexGrowth, LookupsAcrossGenerations) {
    HandOutline h(VTX_NAMES_UNIQUE, false, 10);
    VTX_POTLMBR_T d = h.dim("D");
    std::vector<VTX_POTLMBR_T> parents;
    const int kParents = 40, kChildren = 60;
    for (int p = 0; p < kParents; ++p) {
        parents.push_back(h.add(d, ("P" + std::to_string(p)).c_str()));
        for (int c = 0; c < kChildren; ++c) h.add(parents.back(), ("P" + std::to_string(p) + "C" + std::to_string(c)).c_str());
    }
    EXPECT_EQ(otlHashCountEntries(h.o), VTX_ULONG_T(1 + kParents + kParents * kChildren));
    ASSERT_GT(static_cast<ExtendedHash *>(h.o->pExtendedHashTable)->tableCount(), 3u);
    for (int p = 0; p < kParents; ++p)
        for (int c = 0; c < kChildren; c += 7) {
            std::string n = "p" + std::to_string(p) + "c" + std::to_string(c);
            Found f = h.byName(n.c_str());
            ASSERT_NE(f.m, nullptr) << n;
            EXPECT_EQ(f.m->pParent, parents[p]);
        }
    // Names of the first generation go and come back under another spelling.
    VTX_POTLMBR_T first = parents[0]->pChild;
    ASSERT_EQ(otlHashDeleteItem(h.ctx(), h.o, first), 0);
    EXPECT_EQ(h.byName("P0C0").m, nullptr);
    (void)otlFreeMem(h.ctx(), first->MbrInfo.szMember);
    first->MbrInfo.szMember = nullptr;
    ASSERT_EQ(otlStrdup(h.ctx(), "Renamed", &first->MbrInfo.szMember), 0);
    ASSERT_EQ(otlHashAddItem(h.ctx(), h.o, first, first, OTL_HASH_NONE, OTL_HASH_NONE), 0);
    EXPECT_EQ(h.byName("renamed").m, first);
    EXPECT_EQ(h.byName("P39C59").m->pParent, parents[39]);
    EXPECT_EQ(h.byName("P0C1").m->pParent, parents[0]);
}

TEST(IndexLifecycle, FreeReleasesWhatTheIndexOwns) {
    HandOutline h(VTX_NAMES_DUP, false, 100);
    VTX_POTLMBR_T d = h.dim("D");
    VTX_POTLMBR_T a = h.add(d, "A");
    h.add(a, "X");
    VTX_POTLMBR_T b = h.add(d, "B");
    h.add(b, "X");
    h.add(b, "Y");
    ASSERT_TRUE(otlIsNameDuplicated(h.ctx(), h.o, "X", 0, nullptr));
    const long before = h.context().stats().live;
    ASSERT_EQ(otlHashFree(h.ctx(), h.o), 0);
    // The member-number map and the one repeated text's own copy.
    EXPECT_EQ(before - h.context().stats().live, 2);
    EXPECT_EQ(h.o->pExtendedHashTable, nullptr);
    EXPECT_EQ(h.o->pExtendedHashTableDupName, nullptr);
    EXPECT_EQ(h.o->ppMemNum2pItemMap, nullptr);
    EXPECT_EQ(otlHashFree(h.ctx(), h.o), 0);  // twice is harmless
    EXPECT_EQ(h.byName("A").m, nullptr);      // and a freed index finds nothing
}

size_t firstTable(void *hash) { return static_cast<ExtendedHash *>(hash)->tableSize(0); }

TEST(IndexLifecycle, InitialSizeFollowsTheContext) {
    HandOutline dup(VTX_NAMES_DUP, false, 1000);
    EXPECT_EQ(firstTable(dup.o->pExtendedHashTable), ExtendedHash::primeAbove(2000));
    EXPECT_EQ(firstTable(dup.o->pExtendedHashTableDupName), ExtendedHash::primeAbove(80));
    HandOutline h(VTX_NAMES_UNIQUE, false, 1000);
    EXPECT_EQ(firstTable(h.o->pExtendedHashTable), ExtendedHash::primeAbove(2000));
    // Unique names never repeat: no count of repeats until one comes.
    EXPECT_EQ(h.o->pExtendedHashTableDupName, nullptr);
    EXPECT_EQ(h.o->otlDupNameFactory, nullptr);
    ASSERT_EQ(otlHashFree(h.ctx(), h.o), 0);
    // A paged outline that knows it holds more names than estimated is sized
    // for them; one that holds fewer takes the estimate.
    h.o->usOutlineType = VTX_OTL_AGGSTORE;
    h.o->cOPGVersion = 80;
    h.o->totalMemberNamespaceSize = 5000;
    ASSERT_EQ(otlHashInit(h.ctx(), h.o), 0);
    EXPECT_EQ(firstTable(h.o->pExtendedHashTable), ExtendedHash::primeAbove(2 * 105000));
    ASSERT_EQ(otlHashFree(h.ctx(), h.o), 0);
    h.o->totalMemberNamespaceSize = 500;
    ASSERT_EQ(otlHashInit(h.ctx(), h.o), 0);
    EXPECT_EQ(firstTable(h.o->pExtendedHashTable), ExtendedHash::primeAbove(2000));
    // Older paged versions do not know the count.
    ASSERT_EQ(otlHashFree(h.ctx(), h.o), 0);
    h.o->totalMemberNamespaceSize = 5000;
    h.o->cOPGVersion = 79;
    ASSERT_EQ(otlHashInit(h.ctx(), h.o), 0);
    EXPECT_EQ(firstTable(h.o->pExtendedHashTable), ExtendedHash::primeAbove(2000));
    EXPECT_EQ(h.o->otlHashItemsFactoryNextFreeIndex, 0u);
}

TEST(IndexLifecycle, RepeatsAreCountedOnceDuplicatesAreAllowed) {
    HandOutline h(VTX_NAMES_UNIQUE, false, 1000);
    VTX_POTLMBR_T d = h.dim("D");
    VTX_POTLMBR_T a = h.add(d, "A");
    h.add(a, "X");
    // An outline that comes to allow duplicates counts from its first repeat.
    h.o->bNonUniqueName = 1;
    VTX_POTLMBR_T b = h.add(d, "B");
    VTX_POTLMBR_T x2 = h.add(b, "X");
    ASSERT_NE(h.o->pExtendedHashTableDupName, nullptr);
    VTX_ULONG_T count = 0;
    EXPECT_TRUE(otlIsNameDuplicated(h.ctx(), h.o, "X", 0, &count));
    EXPECT_EQ(count, 1u);
    ASSERT_EQ(h.remove(x2), 0);
    EXPECT_FALSE(otlIsNameDuplicated(h.ctx(), h.o, "X", 0, nullptr));
}

} // namespace
