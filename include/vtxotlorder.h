/*
 * vtxotlorder.h -- order and numbering: sorting children, counting
 * dimensions and generations.
 */
#ifndef VTXOTLORDER_H
#define VTXOTLORDER_H

#include "vtxtypes.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Sort orders of adShrOtlSortChildren */
#define VTX_SORT_ASCENDING  0
#define VTX_SORT_DESCENDING 1
#define VTX_SORT_CALLER     2   /* pfnCompare decides */

/* A caller's comparison: <0, 0, >0 as the first member sorts before, with,
 * or after the second. */
typedef int (*VTX_PFNMBRCOMPARE_T)(VTX_HMEMBER_T hMbr1, VTX_HMEMBER_T hMbr2, void *pUserData);

/* Sorts the children of hParent (null: the dimensions).  Hidden children
 * stay at the end.  Type above 2 fails with 1060003, type 2 without a
 * function with 1060004, both before anything moves.  Answers 1 when the
 * comparison is so inconsistent that the sort gave up: the children are
 * then all still there, partly sorted. */
VTX_API VTX_STS_T adShrOtlSortChildren(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hParent, VTX_USHORT_T usType,
                                       VTX_PFNMBRCOMPARE_T pfnCompare, void *pUserData);
/* The number of dimensions. */
VTX_API VTX_STS_T adShrOtlCountDims(VTX_HOUTLINE_T hOutline, VTX_USHORT_T *pusDimCount);
/* The deepest generation of the dimension hDim. */
VTX_API VTX_STS_T adShrOtlCountGens(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_USHORT_T *pusGens);

#ifdef __cplusplus
}
#endif
#endif
