// Outline lifecycle and outline-level settings: creating and closing an
// outline, reading and changing its kind, the smaller setters, memory
// release for the host, and the bounded appender.
#include "otl.h"

#include <cstring>
#include <string>
#include <unordered_map>

#ifndef VTXOTL_VERSION_NUMBER
#define VTXOTL_VERSION_NUMBER 0
#endif
#ifndef VTXOTL_VERSION_STRING
#define VTXOTL_VERSION_STRING "0.0.0"
#endif

namespace {

constexpr VTX_ULONG_T kLatestOPGVersion = 92;   // newest paged format this library writes
constexpr VTX_ULONG_T kOldAggOPGVersion = 71;   // the old aggregate storage format
constexpr VTX_ULONG_T kAliasTablesOPGVersion = 85;  // aggregate storage with more than 32 tables
constexpr VTX_ULONG_T kEncryptedOPGVersion = 90;

// Statuses of the whole-outline checks a change of kind runs, as the
// verification words translate them: a duplicate name (word 0x100) and a
// currency outline with too many dimensions (word 0x200000).
constexpr VTX_STS_T kStsVerifyDupName = 1060023;
constexpr VTX_STS_T kStsCurrencyDims = 1060220;

VTX_POTL_T toOutline(VTX_HOUTLINE_T h) { return static_cast<VTX_POTL_T>(h); }

// Parts of the outline that later areas build; each answers what holds for
// an outline that does not have them yet.
//   - smart lists, property definitions, attribute globals: none exist yet.

// The dimensions of the outline, in order.
template <class F>
void forEachDim(VTX_POTL_T pOutline, F &&f) {
    if (!pOutline->pHeadItem) return;
    for (VTX_POTLMBR_T d = pOutline->pHeadItem->pChild; d; d = d->pSibling) f(d);
}

// Finds two stored members whose names are equal once case is ignored:
// what turning case sensitivity off would make ambiguous.  Shared members
// carry their stored member's name and do not count.
VTX_POTLMBR_T findCaseCollision(VTX_POTL_T pOutline) {
    std::unordered_map<std::string, VTX_POTLMBR_T> seen;
    void *pLocale = pOutline->pNetCtx ? pOutline->pNetCtx->pLocale : nullptr;
    std::string folded;
    VTX_POTLMBR_T top = pOutline->pHeadItem;
    for (VTX_POTLMBR_T p = otlNavtrdn(top, top); p; p = otlNavtrdn(p, top)) {
        if (OTL_IS_HIDDEN(p) || otlMbrIsSharedShare(p) || !p->MbrInfo.szMember) continue;
        size_t n = std::strlen(p->MbrInfo.szMember);
        folded.assign(3 * n + 1, '\0');  // folding can triple a character
        if (adGlobStrNToUpper(pLocale, folded.data(), p->MbrInfo.szMember, folded.size())) continue;
        folded.resize(std::strlen(folded.c_str()));
        auto [it, inserted] = seen.emplace(folded, p);
        if (!inserted) return p;
    }
    return nullptr;
}

VTX_STS_T copyOutInfo(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, vtx_outlineinfo_t **ppInfo) {
    vtx_outlineinfo_t *pInfo = nullptr;
    VTX_STS_T sts = otlAlloc(pNetCtx, sizeof *pInfo, &pInfo);
    if (sts) return sts;
    pInfo->fCaseSensitive = pOutline->fCaseSensitive;
    pInfo->usOutlineType = pOutline->usOutlineType;
    pInfo->fAutoConfigure = pOutline->fAutoConfigure;
    pInfo->fNonUniqueName = pOutline->bNonUniqueName;
    pInfo->fEnableVaryingAttrs = pOutline->fEnableSlowlyChgAttrs;
    pInfo->fEnableMemberType = pOutline->bMemberTypeEnabled;
    pInfo->ucImpliedShareSetting = pOutline->ucImpliedShareSetting;
    pInfo->usOtlNameType = pOutline->usOtlNameType;
    // "Unique Name" and "Member ID" are the outline's own business.
    unsigned first = pOutline->bNonUniqueName ? 2 : 0;
    unsigned n = pOutline->usNumAliasTables > first ? pOutline->usNumAliasTables - first : 0;
    if (n > VTX_EXP_ALIAS_TABLES) n = VTX_EXP_ALIAS_TABLES;
    pInfo->usNumAliasTables = (VTX_USHORT_T)n;
    for (unsigned i = 0; i < n; ++i) {
        const char *name = pOutline->pAliasArray ? pOutline->pAliasArray[first + i] : nullptr;
        if (name) {
            std::strncpy(pInfo->pAliasTables[i], name, VTX_ALIASNAME_LEN - 1);
            pInfo->pAliasTables[i][VTX_ALIASNAME_LEN - 1] = 0;
        }
    }
    if (pOutline->bHiddenLevel0) pInfo->usPreAllocatedChildren = pOutline->usPreAllocatedChildren;
    *ppInfo = pInfo;
    return 0;
}

} // namespace

extern "C" {

VTX_ULONG_T adShrOtlGetLibraryVersion(void) { return VTXOTL_VERSION_NUMBER; }
const char *adShrOtlGetLibraryVersionString(void) { return VTXOTL_VERSION_STRING; }

VTX_ULONG_T otlGetLatestOPGVersion(VTX_POTL_T) { return kLatestOPGVersion; }

// ---- creation and release ---------------------------------------------------

VTX_STS_T otlCreateOutlineData(vTX_PNETCTX_T pNetCtx, VTX_POTL_T *ppOutline, VTX_BOOL_T bOPG,
                               VTX_USHORT_T usOtlNameType) {
    if (!ppOutline) return VTX_STS_NULL_ARG;
    *ppOutline = nullptr;
    VTX_POTL_T p = nullptr;
    VTX_STS_T sts = otlAlloc(pNetCtx, sizeof *p, &p);
    if (sts) return sts;
    p->pNetCtx = pNetCtx;
    p->usOtlNameType = usOtlNameType;
    p->usSwapped = 0;
    p->bNonUniqueName = usOtlNameType == VTX_NAMES_DUP ? 1 : 0;
    p->ucImpliedShareSetting = 4;
    p->hFile = -1;

    sts = otlCreateAliasArray(pNetCtx, p);
    const size_t slots = sizeof(VTX_ULONG_T) * OTL_DIM_SLOTS;
    if (!sts) sts = otlAlloc(pNetCtx, slots, &p->dimIds);
    if (!sts) sts = otlAlloc(pNetCtx, slots, &p->nextMbrIds);
    if (!sts) sts = otlAlloc(pNetCtx, slots, &p->nextPersistMbrIds);
    if (!sts) sts = otlAlloc(pNetCtx, sizeof(VTX_POTLMBR_T) * OTL_DIM_SLOTS, &p->renMbrs);
    if (!sts) sts = otlAlloc(pNetCtx, slots, &p->hiddenMbrParentIds);
    if (!sts) sts = otlAlloc(pNetCtx, slots, &p->hiddenMbrCounts);
    if (!sts) {
        for (unsigned i = 0; i < OTL_DIM_SLOTS; ++i) {
            p->nextMbrIds[i] = 1;
            p->nextPersistMbrIds[i] = 1;
        }
        sts = adGlobGetUTF8Locale(&p->pUTF8Locale);
    }
    if (!sts) {
        p->pLocale = pNetCtx ? pNetCtx->pLocale : nullptr;
        if (!bOPG) {
            sts = otlHashInit(pNetCtx, p);
            if (!sts) sts = otlCreateDTSMbrs(pNetCtx, p);
        }
    }
    p->jsonHandler = nullptr;
    if (sts) {
        (void)otlFreeOutlineData(pNetCtx, p);  // the creation failure is the status to return
        return sts;
    }
    *ppOutline = p;
    return 0;
}

VTX_STS_T otlFreeOutlineData(vTX_PNETCTX_T pNetCtx, VTX_POTL_T p) {
    if (!p) return 0;
    // Members first: their alias slots are sized by the outline's tables.
    otlFreeQueryMembers(pNetCtx, p);
    if (p->pHeadItem) {
        otlFreeItemList(pNetCtx, p, p->pHeadItem);
        p->pHeadItem = nullptr;
    }
    otlFreeMemList(pNetCtx, p);
    otlFreeAliasArray(pNetCtx, p);
    otlFreeDTSMbrs(pNetCtx, p);
    (void)otlHashFree(pNetCtx, p);  // closing: nothing to report to
    (void)otlFreeMem(pNetCtx, p->pDupMbrArry);
    p->pDupMbrArry = nullptr;
    (void)otlFreeMem(pNetCtx, p->DimTable);
    p->DimTable = nullptr;
    p->DimTableSize = 0;
    (void)otlFreeMem(pNetCtx, p->Counts.pulAliasMembers);
    (void)otlFreeMem(pNetCtx, p->Counts.pulAliases);
    (void)otlFreeMem(pNetCtx, p->Counts.pDimensionMaps);
    (void)adShrOtlFreeAttrSpecsMembers(pNetCtx, &p->AttrSpecs);
    // The UTF-8 locale is shared; the input and target locales are ours.
    if (p->pInputLocale) adGlobFreeLocale(p->pInputLocale);
    if (p->pTargetLocale && p->pTargetLocale != p->pInputLocale) adGlobFreeLocale(p->pTargetLocale);
    p->pInputLocale = p->pTargetLocale = p->pUTF8Locale = nullptr;
    for (void **pp : {(void **)&p->dimIds, (void **)&p->nextMbrIds, (void **)&p->nextPersistMbrIds,
                      (void **)&p->renMbrs, (void **)&p->hiddenMbrParentIds, (void **)&p->hiddenMbrCounts,
                      (void **)&p->pszDatabasename, (void **)&p->queryHintArray,
                      (void **)&p->altMemberIdAliasTable}) {
        (void)otlFreeMem(pNetCtx, *pp);  // close path: a release failure has no one to go to
        *pp = nullptr;
    }
    (void)otlFreeMem(pNetCtx, p);
    return 0;
}

VTX_STS_T adShrOtlNewOutline(vtx_netctx_t *pNetCtx, const vtx_outlineinfo_t *pNewInfo,
                             VTX_HOUTLINE_T *phOutline, VTX_BOOL_T bHasInputNativeLocale) {
    if (phOutline) *phOutline = nullptr;
    if (!pNetCtx || !pNewInfo || !phOutline) return otlReport(pNetCtx, VTX_STS_NULL_ARG, "adShrOtlNewOutline", VTX_MSGARG_STR, nullptr, 0);
    return otl::otlGuard(pNetCtx, "adShrOtlNewOutline", [&]() -> VTX_STS_T {
        if (pNewInfo->usOutlineType > VTX_OTL_AGGSTORE) return otlReport(pNetCtx, VTX_STS_BAD_OUTLINE_TYPE, nullptr, 0, nullptr, 0);
        VTX_USHORT_T nameType = pNewInfo->usOtlNameType;
        if (nameType == 0 && pNewInfo->fNonUniqueName) nameType = VTX_NAMES_DUP;
        if (nameType > VTX_NAMES_RELAXED) return otlReport(pNetCtx, VTX_STS_BAD_NAME_TYPE, nullptr, 0, nullptr, 0);

        VTX_POTL_T p = nullptr;
        VTX_STS_T sts = otlCreateOutlineData(pNetCtx, &p, 0, nameType);
        if (sts) return otlReport(pNetCtx, sts, "adShrOtlNewOutline", VTX_MSGARG_STR, nullptr, 0);
        if (pNetCtx->pServerLocale) {
            sts = adGlobGetLocaleString(pNetCtx->pServerLocale, p->pInputLocaleString, sizeof p->pInputLocaleString);
            if (!sts && p->pInputLocaleString[0])
                sts = adGlobGetLocaleAndStatus(p->pInputLocaleString, &p->pInputLocale);
        }
        p->bIsUTF8 = ((pNetCtx->usCallerType == VTX_CALLER_API && pNetCtx->usApiType == VTX_ENC_UTF8) ||
                      (pNetCtx->usCallerType == VTX_CALLER_APP && pNetCtx->usAppType == VTX_ENC_UTF8)) ? 1 : 0;
        p->bIsNewOutline = 1;
        p->fKeepTrans = 0;
        p->fKeepTransReplay = pNetCtx->bReplayLogTransEnabled;
        p->fCaseSensitive = pNewInfo->fCaseSensitive ? 1 : 0;
        p->bMemberTypeEnabled = pNewInfo->fEnableMemberType ? 1 : 0;
        p->fAutoConfigure = pNewInfo->fAutoConfigure ? 1 : 0;
        p->usOutlineType = pNewInfo->usOutlineType;
        if (nameType == VTX_NAMES_RELAXED) p->ucImpliedShareSetting = 4;
        // A new aggregate storage outline starts at the newest paged format,
        // as a later change of type to aggregate storage would choose.
        if (p->usOutlineType == VTX_OTL_AGGSTORE) p->cOPGVersion = otlGetLatestOPGVersion(p);
        // Both pools exist from the start so that adds come from them.
        if (!sts) sts = otlInitMemList(pNetCtx, p, pNetCtx->estimatedHashSize, 1);
        if (!sts) sts = otlInitMemList(pNetCtx, p, pNetCtx->estimatedHashSize, 0);
        VTX_POTLMBR_T root = nullptr;
        if (!sts) sts = otlNewItem(pNetCtx, p, &root, 1);
        if (!sts) {
            p->pHeadItem = root;
            root->MbrInfo.usGen = 0;
            root->ulDimno = OTL_ROOT_DIMNO;
            sts = otlAlloc(pNetCtx, OTL_ROOT_NAME_BLOCK, &root->MbrInfo.szMember);
            if (!sts) std::strcpy(root->MbrInfo.szMember, OTL_ROOT_NAME);
        }
        if (bHasInputNativeLocale) p->iInputLocaleType = 1;
        if (sts) {
            (void)otlFreeOutlineData(pNetCtx, p);  // the creation failure is the status to return
            return otlReport(pNetCtx, sts, "adShrOtlNewOutline", VTX_MSGARG_STR, nullptr, 0);
        }
        *phOutline = p;
        return 0;
    });
}

VTX_STS_T adShrOtlCloseOutline(VTX_HOUTLINE_T hOutline) {
    VTX_POTL_T p = toOutline(hOutline);
    if (!p) return 0;
    vTX_PNETCTX_T pNetCtx = p->pNetCtx;
    // The paged store is closed by its own area once it exists; an outline
    // made in memory has none.  A temporary file named by the outline goes.
    if (p->bTempFile && p->pszDatabasename) (void)VtxSdFileRemove(pNetCtx ? pNetCtx->pSdCtx : nullptr, p->pszDatabasename);  // close never fails
    (void)otlFreeOutlineData(pNetCtx, p);
    return 0;
}

// ---- outline info -------------------------------------------------------------

VTX_STS_T adShrOtlGetOutlineInfo(VTX_HOUTLINE_T hOutline, vtx_outlineinfo_t **ppInfo) {
    if (ppInfo) *ppInfo = nullptr;
    otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!ppInfo) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetOutlineInfo", VTX_MSGARG_STR);
    VTX_STS_T sts = copyOutInfo(f.ctx(), f.outline(), ppInfo);
    return sts ? f.fail(sts, "adShrOtlGetOutlineInfo", VTX_MSGARG_STR) : 0;
}

VTX_STS_T adShrOtlSetOutlineInfo(VTX_HOUTLINE_T hOutline, const vtx_outlineinfo_t *pInfo, VTX_BOOL_T bExtended,
                                 vtx_outerror_t *pMbrError) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kQueryOk | otl::kNoProhibit, pMbrError);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!pInfo) return f.fail(VTX_STS_NULL_ARG, "adShrOtlSetOutlineInfo", VTX_MSGARG_STR);
    VTX_POTL_T p = f.outline();
    return otl::otlGuard(f.ctx(), "adShrOtlSetOutlineInfo", [&]() -> VTX_STS_T {
        VTX_USHORT_T newType = pInfo->usOutlineType;
        bool oldAgg = false;
        if (newType == VTX_OTL_OLDAGG) {
            newType = VTX_OTL_AGGSTORE;
            oldAgg = true;
        } else if (newType > VTX_OTL_AGGSTORE) {
            return f.fail(VTX_STS_BAD_OUTLINE_TYPE);
        }
        const VTX_USHORT_T curType = p->usOutlineType;
        // Varying attributes exist only in newer formats and outline kinds.
        if (p->cOPGVersion && (p->fEnableSlowlyChgAttrs || pInfo->fEnableVaryingAttrs)) {
            bool agg = curType == VTX_OTL_AGGSTORE || newType == VTX_OTL_AGGSTORE;
            bool cur = curType == VTX_OTL_CURRENCY || newType == VTX_OTL_CURRENCY;
            bool dup = p->bNonUniqueName || pInfo->fNonUniqueName;
            if ((p->cOPGVersion <= 76 && agg) || cur || dup) return f.fail(VTX_STS_VARYING_OLD);
        }
        if (newType == VTX_OTL_AGGSTORE && curType != VTX_OTL_AGGSTORE) {
            if (pInfo->fEnableMemberType && p->cOPGVersion >= 1 && p->cOPGVersion <= 76)
                return f.fail(VTX_STS_MBRTYPE_OLD_AGG);
            if (curType == VTX_OTL_CURRENCY) return f.fail(VTX_STS_CURRENCY_TO_AGG);
        }
        if (p->fOpenQuery) return f.fail(VTX_STS_WRONG_MODE);
        // Typed members can be switched on, never off; duplicate names and
        // the name type likewise only move one way.  Refuse these before
        // anything changes.
        if (p->bMemberTypeEnabled && !pInfo->fEnableMemberType) return f.fail(VTX_STS_MBRTYPE_OFF_REFUSED);
        if (p->bNonUniqueName && !pInfo->fNonUniqueName) return f.fail(VTX_STS_DUP_OFF_REFUSED);
        const bool turnDup = pInfo->fNonUniqueName && !p->bNonUniqueName;
        if (turnDup) {
            if (newType == VTX_OTL_AGGSTORE && p->cOPGVersion <= 72 && p->cOPGVersion != 0)
                return f.fail(VTX_STS_DUP_OLD_AGG);
            if (p->usOtlNameType == VTX_NAMES_RELAXED) return f.fail(VTX_STS_NAMETYPE_2_TO_1);
        }
        if (curType == VTX_OTL_REGULAR && newType == VTX_OTL_CURRENCY) {
            // The currency rules check the whole outline; what they can find
            // in an outline of standard dimensions is a fifth dimension.
            if (p->Counts.ulDimensions > 4 || (p->pHeadItem && p->pHeadItem->ulSiblingCount > 4))
                return f.fail(kStsCurrencyDims);
            bool partition = false;
            forEachDim(p, [&](VTX_POTLMBR_T d) {
                if (!OTL_IS_SMALL(d) && OTL_LARGE(d)->MbrInfo.usCategory == VTX_CAT_CURRPART) partition = true;
            });
            if (partition) return f.fail(VTX_STS_CURRENCY_CATEGORY);
        } else if (curType == VTX_OTL_CURRENCY && newType == VTX_OTL_REGULAR) {
            bool currency = false;
            forEachDim(p, [&](VTX_POTLMBR_T d) {
                if (!OTL_IS_SMALL(d) && OTL_LARGE(d)->MbrInfo.usCategory == VTX_CAT_CURRENCY) currency = true;
            });
            if (currency) return f.fail(VTX_STS_CURRENCY_CATEGORY);
        }
        // Case sensitivity off: names that differ only in case would collide.
        if (p->fCaseSensitive && !pInfo->fCaseSensitive && !p->bNonUniqueName && !bExtended) {
            if (VTX_POTLMBR_T clash = findCaseCollision(p)) {
                if (pMbrError) {
                    pMbrError->hMember = clash;
                    pMbrError->ulErrors = 0x100;  // duplicate member name
                }
                return f.fail(kStsVerifyDupName, clash->MbrInfo.szMember, VTX_MSGARG_STR);
            }
        }

        // Everything that can refuse has run; make the change.  Turning to
        // duplicate names goes first, since it alone can still fail: it
        // renumbers and makes room for "Unique Name" and "Member ID", and a
        // failure of either leaves the outline as it was.
        if (turnDup) {
            if (newType != VTX_OTL_AGGSTORE) {
                if (VTX_STS_T sts = otlUpdateMemno(p, p->pHeadItem)) return f.fail(sts, "adShrOtlSetOutlineInfo", VTX_MSGARG_STR);
            }
            if (VTX_STS_T sts = otlInsertReservedAliasTables(p)) return f.fail(sts, "adShrOtlSetOutlineInfo", VTX_MSGARG_STR);
            p->bNonUniqueName = 1;
            p->usOtlNameType = VTX_NAMES_DUP;
            forEachDim(p, [](VTX_POTLMBR_T d) { d->ucFlags |= OTL_FLAG_DUP; });
            if (newType == VTX_OTL_AGGSTORE && p->cOPGVersion < 74) p->cOPGVersion = 74;
            // The attribute naming rules would be applied again here for
            // attribute members; an outline without attribute dimensions has
            // none.  The converted outline is saved and reopened before it
            // is edited again.
            p->bEditingProhibited = 1;
        }
        if (newType == VTX_OTL_AGGSTORE) {
            if (oldAgg) {
                p->cOPGVersion = kOldAggOPGVersion;
            } else if (p->cOPGVersion == 0) {
                p->cOPGVersion = otlGetLatestOPGVersion(p);
            }
            unsigned limit = p->bNonUniqueName ? 34 : 32;
            if (p->usNumAliasTables > limit && p->cOPGVersion < kAliasTablesOPGVersion)
                p->cOPGVersion = kAliasTablesOPGVersion;
            if (p->isEncrypted && p->cOPGVersion < kEncryptedOPGVersion) p->cOPGVersion = kEncryptedOPGVersion;
        }
        if (curType == VTX_OTL_AGGSTORE && newType != VTX_OTL_AGGSTORE) {
            // Leaving aggregate storage: a dense dimension must remain.
            bool anyDense = false;
            VTX_POTLMBR_T first = p->pHeadItem ? p->pHeadItem->pChild : nullptr;
            forEachDim(p, [&](VTX_POTLMBR_T d) {
                if (!OTL_IS_SMALL(d) && OTL_LARGE(d)->MbrInfo.usStorage == 0) anyDense = true;
            });
            if (!anyDense && first && !OTL_IS_SMALL(first)) OTL_LARGE(first)->MbrInfo.usStorage = 0;
        }
        p->usOutlineType = newType;
        p->fCaseSensitive = pInfo->fCaseSensitive ? 1 : 0;
        p->fAutoConfigure = pInfo->fAutoConfigure ? 1 : 0;
        p->fEnableSlowlyChgAttrs = pInfo->fEnableVaryingAttrs ? 1 : 0;
        if (pInfo->fEnableMemberType) p->bMemberTypeEnabled = 1;
        if (p->bHiddenLevel0) p->usPreAllocatedChildren = pInfo->usPreAllocatedChildren;
        p->fVerified = 0;
        p->ucStateFlag |= OTL_STATE_EDITED;
        return 0;
    });
}

// ---- smaller setters and getters -----------------------------------------------

VTX_STS_T adShrOtlSetOutlineNameType(VTX_HOUTLINE_T hOutline, VTX_USHORT_T usOtlNameType) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kQueryOk | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter()) return sts;
    VTX_POTL_T p = f.outline();
    VTX_USHORT_T cur = p->usOtlNameType;
    if (cur == usOtlNameType) return 0;
    if (usOtlNameType == VTX_NAMES_RELAXED && p->usOutlineType == VTX_OTL_AGGSTORE && p->cOPGVersion < 82)
        return f.fail(VTX_STS_RELAXED_OLD_AGG);
    if (usOtlNameType > VTX_NAMES_RELAXED) return f.fail(VTX_STS_BAD_NAME_TYPE);
    if (cur == VTX_NAMES_DUP) return f.fail(usOtlNameType == VTX_NAMES_RELAXED ? VTX_STS_NAMETYPE_1_TO_2 : VTX_STS_NAMETYPE_1_TO_0);
    if (cur == VTX_NAMES_RELAXED) return f.fail(usOtlNameType == VTX_NAMES_DUP ? VTX_STS_NAMETYPE_2_TO_1 : VTX_STS_NAMETYPE_2_TO_0);
    if (usOtlNameType == VTX_NAMES_DUP) {
        // Duplicate names need the "Unique Name" and "Member ID" tables and
        // a save before the next edit: only the outline info change does
        // all of that.
        return f.fail(VTX_STS_DUP_CONVERT_UNAVAILABLE);
    }
    p->usOtlNameType = usOtlNameType;
    if (usOtlNameType == VTX_NAMES_RELAXED) p->ucImpliedShareSetting = 4;
    p->ucStateFlag |= OTL_STATE_CHANGED;
    return 0;
}

VTX_STS_T adShrOtlGetOutlineNameType(VTX_HOUTLINE_T hOutline, VTX_USHORT_T *pusOtlNameType) {
    if (pusOtlNameType) *pusOtlNameType = 0;
    otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!pusOtlNameType) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetOutlineNameType", VTX_MSGARG_STR);
    *pusOtlNameType = f.outline()->usOtlNameType;
    return 0;
}

VTX_STS_T adShrOtlSetImpliedShareSetting(VTX_HOUTLINE_T hOutline, VTX_UCHAR_T usImpSetting,
                                         VTX_UCHAR_T cfgImpliedShareSetting) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kQueryOk | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter()) return sts;
    VTX_POTL_T p = f.outline();
    if (p->usOutlineType == VTX_OTL_AGGSTORE && p->cOPGVersion < 77) return f.fail(VTX_STS_IMPLIED_SHARE_OLD);
    VTX_UCHAR_T v = (usImpSetting == 3 || usImpSetting == 4) ? usImpSetting : cfgImpliedShareSetting;
    if (v != p->ucImpliedShareSetting) {
        p->ucImpliedShareSetting = v;
        p->ucStateFlag |= OTL_STATE_CHANGED;
    }
    return 0;
}

VTX_STS_T adShrOtlGetImpliedShareSetting(VTX_HOUTLINE_T hOutline, VTX_UCHAR_T *pusImpSetting) {
    if (pusImpSetting) *pusImpSetting = 0;
    otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!pusImpSetting) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetImpliedShareSetting", VTX_MSGARG_STR);
    *pusImpSetting = f.outline()->ucImpliedShareSetting;
    return 0;
}

// Setters that store their one argument.  Those that need an edit handle
// say so through their frame kind; the state mark is theirs to choose.
#define OTL_SIMPLE_SETTER(NAME, TYPE, FIELD, KIND, MARK)                         \
    VTX_STS_T NAME(VTX_HOUTLINE_T hOutline, TYPE value) {                        \
        otl::CallFrame f(hOutline, (KIND));                                      \
        if (VTX_STS_T sts = f.enter()) return sts;                               \
        f.outline()->FIELD = value;                                              \
        if (MARK) f.outline()->ucStateFlag |= OTL_STATE_CHANGED;                 \
        return 0;                                                                \
    }

#define OTL_SIMPLE_GETTER(NAME, TYPE, FIELD)                                     \
    VTX_STS_T NAME(VTX_HOUTLINE_T hOutline, TYPE *pValue) {                      \
        if (pValue) *pValue = 0;                                                 \
        otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);                  \
        if (VTX_STS_T sts = f.enter()) return sts;                               \
        if (!pValue) return f.fail(VTX_STS_NULL_ARG, #NAME, VTX_MSGARG_STR);     \
        *pValue = f.outline()->FIELD;                                            \
        return 0;                                                                \
    }

constexpr unsigned kAnyHandle = otl::kQueryOk | otl::kNoProhibit;
constexpr unsigned kEditHandle = otl::kNoProhibit;

OTL_SIMPLE_SETTER(adShrOtlSetForceWrite, VTX_BOOL_T, fForceWrite, kEditHandle, false)
OTL_SIMPLE_SETTER(adShrOtlSetMyAnalyticsOutline, VTX_BOOL_T, bMyOlapEnabled, kEditHandle, true)
OTL_SIMPLE_SETTER(adShrOtlSetTargetType, VTX_USHORT_T, usTargetType, kAnyHandle, false)
OTL_SIMPLE_SETTER(adShrOtlSetTargetLocale, void *, pTargetLocale, kAnyHandle, false)
OTL_SIMPLE_SETTER(adShrOtlSetTargetServerVersion, VTX_LONG_T, lTargetServerVersion, kAnyHandle, false)
OTL_SIMPLE_SETTER(adShrOtlSetOutlineVersion, VTX_ULONG_T, otlVersion, kAnyHandle, true)
OTL_SIMPLE_SETTER(adShrOtlSetTrackInternalTransactions, VTX_BOOL_T, fTrackInternalTrans, kAnyHandle, false)
OTL_SIMPLE_SETTER(adShrOtlSetIsInIncBuild, VTX_BOOL_T, isIncrementalDimBuild, kAnyHandle, false)
OTL_SIMPLE_SETTER(adShrOtlSetSMDateFormatStringValue, VTX_CHAR_T, cSMDateFormatValue, kAnyHandle, true)
OTL_SIMPLE_SETTER(adShrOtlSetBuildingDim, VTX_BOOL_T, fBuildingDim, kAnyHandle, false)
OTL_SIMPLE_SETTER(adShrOtlSetCallerType, VTX_UCHAR_T, ucCallerType, kAnyHandle, false)

OTL_SIMPLE_GETTER(adShrOtlGetOutlineVersion, VTX_ULONG_T, otlVersion)
OTL_SIMPLE_GETTER(adShrOtlGetOutlineIsUtf8, VTX_BOOL_T, bIsUTF8)
OTL_SIMPLE_GETTER(adShrOtlGetMyAnalyticsOutline, VTX_BOOL_T, bMyOlapEnabled)
OTL_SIMPLE_GETTER(adShrOtlGetIsInIncBuild, VTX_BOOL_T, isIncrementalDimBuild)
OTL_SIMPLE_GETTER(adShrOtlGetSMDateFormatStringValue, VTX_CHAR_T, cSMDateFormatValue)
OTL_SIMPLE_GETTER(adShrGetNonUniqueNameFlag, VTX_BOOL_T, bNonUniqueName)

VTX_STS_T adShrOtlSetArrangeDimensions(VTX_HOUTLINE_T hOutline, VTX_BOOL_T fArrange) {
    otl::CallFrame f(hOutline, otl::kQueryOk | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter()) return sts;
    f.outline()->fArrangeDims = fArrange ? 1 : 0;
    f.outline()->ucStateFlag |= OTL_STATE_CHANGED;
    return 0;
}

VTX_STS_T adShrOtlGetPagedFilename(VTX_HOUTLINE_T hOutline, char *pszBuf, size_t bufSize) {
    if (pszBuf && bufSize) pszBuf[0] = 0;
    otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!pszBuf || !bufSize) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetPagedFilename", VTX_MSGARG_STR);
    VTX_POTL_T p = f.outline();
    if (p->incrementalOPGfile && p->pszDatabasename) {
        if (std::strlen(p->pszDatabasename) >= bufSize) return f.fail(VTX_STS_TEXT_TOO_LONG);
        std::strcpy(pszBuf, p->pszDatabasename);
    }
    return 0;
}

VTX_STS_T adShrOtlGetOPGVersion(VTX_HOUTLINE_T hOutline, VTX_ULONG_T *pulVersion) {
    if (pulVersion) *pulVersion = 0;
    otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!pulVersion) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetOPGVersion", VTX_MSGARG_STR);
    // Stored numbers and the numbers callers see.
    static const struct { VTX_ULONG_T stored, seen; } kMap[] = {
        {0, 71}, {1, 71}, {71, 71}, {2, 72}, {73, 72}, {74, 900}, {75, 930}, {76, 9311},
        {77, 950}, {78, 11110}, {79, 11120}, {80, 11122}, {81, 11124}, {82, 111241},
        {85, 111245}, {90, 11124505}, {91, 11124516}, {92, 12211116},
    };
    for (const auto &m : kMap) {
        if (m.stored == f.outline()->cOPGVersion) {
            *pulVersion = m.seen;
            return 0;
        }
    }
    return f.fail(VTX_STS_BAD_OPG_VERSION);
}

// ---- memory release ----------------------------------------------------------------

VTX_STS_T adShrOtlFree(vtx_netctx_t *pNetCtx, void *pData) {
    if (!pData) return 0;
    return otlFreeMem(pNetCtx, pData);
}

VTX_STS_T adShrOtlFreeMbrInfo(vtx_netctx_t *pNetCtx, VTX_ULONG_T ulCount, vtx_mbrinfo_t *pMbrInfo) {
    if (!pMbrInfo) return 0;
    // The records of a client before 5.0 are the short form, which holds no
    // pointer of its own.
    if (pNetCtx && pNetCtx->lClientVersion >= 0x50000)
        for (VTX_ULONG_T i = 0; i < ulCount; ++i) otlFreeMbrInfoPointerFields(pNetCtx, &pMbrInfo[i]);
    return otlFreeMem(pNetCtx, pMbrInfo);
}

VTX_STS_T adShrOtlFreeAttribute(vtx_netctx_t *pNetCtx, VTX_ATTRIBUTEVALUE_T *pAttribute) {
    if (!pAttribute) return 0;
    VTX_STS_T sts = 0;
    if (pAttribute->usDataType == VTX_ATTR_STRING && pAttribute->value.pszValue)
        sts = otlFreeMem(pNetCtx, pAttribute->value.pszValue);
    pAttribute->value.raw = 0;
    pAttribute->usDataType = 0;
    return sts;
}

VTX_STS_T adShrOtlFreeAttrSpecsMembers(vtx_netctx_t *pNetCtx, VTX_ATTRSPECS_T *s) {
    if (!s) return 0;
    for (VTX_STR_T *pp : {&s->pszDefaultTrueString, &s->pszDefaultFalseString, &s->pszDefaultAttrCalcDimName,
                          &s->pszDefaultSumMbrName, &s->pszDefaultCountMbrName, &s->pszDefaultAverageMbrName,
                          &s->pszDefaultMinMbrName, &s->pszDefaultMaxMbrName}) {
        (void)otlFreeMem(pNetCtx, *pp);  // the texts are the caller's; a release cannot be undone
        *pp = nullptr;
    }
    return 0;
}

VTX_STS_T adShrOtlFreeAttrSpecs(vtx_netctx_t *pNetCtx, VTX_ATTRSPECS_T *pAttrSpecs) {
    if (!pAttrSpecs) return 0;
    (void)adShrOtlFreeAttrSpecsMembers(pNetCtx, pAttrSpecs);  // answers 0 by construction
    return otlFreeMem(pNetCtx, pAttrSpecs);
}

// ---- bounded appender ----------------------------------------------------------------

void adShrOtlGlobStrCatInit(VtxStaticBufferToAppend *x, void *pLocale, char *buf, size_t bufsize) {
    if (!x) return;
    x->pLocale = pLocale;
    x->buf = buf;
    x->bufsize = bufsize;
    x->bTriggered = (!buf || bufsize == 0) ? 1 : 0;
    if (buf && bufsize) buf[0] = 0;
    x->tail = buf;
}

int adShrOtlGlobStrCatTail(VtxStaticBufferToAppend *x, const char *src) {
    if (!x || x->bTriggered) return 0;
    if (!src) return 1;
    size_t used = (size_t)(x->tail - x->buf);
    size_t n = std::strlen(src);
    if (used + n + 1 > x->bufsize) {
        x->bTriggered = 1;
        return 0;
    }
    std::memcpy(x->tail, src, n + 1);
    x->tail += n;
    return 1;
}

} // extern "C"
