/*
 * otlframe.h -- the frame every exported call runs in.
 *
 * One place where the C boundary meets the library: an exported call builds
 * a CallFrame, lets it check the handle and the members it names, does its
 * work, and returns through the frame so that failures are reported by one
 * rule and successful edits mark the outline.  Exported calls wrap their
 * body in otlGuard so that no exception ever crosses the boundary.
 */
#ifndef OTLFRAME_H
#define OTLFRAME_H

#include <initializer_list>
#include <new>

namespace otl {

enum CallKind : unsigned {
    kRead       = 0,     /* reads; refused on a query handle */
    kEdit       = 1u,    /* changes the outline: refused while editing is prohibited */
    kQueryOk    = 2u,    /* also served on a query handle */
    kMemberEdit = 4u,    /* member edit: failures also sent when ucCallerType is 2 */
    kNoProhibit = 8u,    /* an edit that stays allowed while editing is prohibited */
};

class VTX_API CallFrame {
public:
    /* Steps 1 and 2 of every call: take the context, zero the error record. */
    CallFrame(VTX_HOUTLINE_T hOutline, unsigned kind, VTX_POUTERROR_T pMbrError = nullptr) noexcept;

    /* Steps 4 to 6: a null handle, a hidden member (silent -1), a query
     * handle (1060068), prohibited editing (1060291).  Null members are
     * passed over. */
    [[nodiscard]] VTX_STS_T enter(std::initializer_list<VTX_HMEMBER_T> members = {}) noexcept;

    VTX_POTL_T outline() const noexcept { return pOutline_; }
    vTX_PNETCTX_T ctx() const noexcept { return pNetCtx_; }

    /* Reports a failure by the rule of this call's kind and returns the
     * status to hand back.  0 and -1 pass unreported. */
    [[nodiscard]] VTX_STS_T fail(VTX_STS_T code, const void *arg1 = nullptr, VTX_USHORT_T type1 = 0,
                                 const void *arg2 = nullptr, VTX_USHORT_T type2 = 0) const noexcept;

    /* Step 7 of a successful edit: fVerified 0 and state bits ORed in. */
    void edited(VTX_UCHAR_T stateBits = OTL_STATE_EDITED) const noexcept;

private:
    VTX_POTL_T pOutline_;
    vTX_PNETCTX_T pNetCtx_;
    unsigned kind_;
};

/* Runs body() and turns an escaping exception into a status: out of memory
 * is 1060358 naming the call, anything else the same, since the class layer
 * throws nothing but allocation failures. */
template <class F>
VTX_STS_T otlGuard(vTX_PNETCTX_T pNetCtx, const char *pszCall, F &&body) noexcept {
    try {
        return body();
    } catch (...) {
        return otlNoMemory(pNetCtx, pszCall);
    }
}

} // namespace otl

#endif
