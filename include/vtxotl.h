/*
 * vtxotl.h -- everything a host includes to use the outline library.
 *
 * Link with -lvtxotl -lvtxhost (pkg-config vtxotl, or find_package(vtxotl)).
 * The rules of the interface are at the top of vtxtypes.h.
 */
#ifndef VTXOTL_H
#define VTXOTL_H

#include "vtxtypes.h"
#include "vtxstatus.h"
#include "vtxnetctx.h"
#include "vtxrecords.h"
#include "vtxhostsvc.h"
#include "vtxotlapi.h"

#endif
