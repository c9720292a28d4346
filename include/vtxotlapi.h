/*
 * vtxotlapi.h -- the exported calls, by family.
 */
#ifndef VTXOTLAPI_H
#define VTXOTLAPI_H

#include "vtxotllife.h"
#include "vtxotledit.h"
#include "vtxotlfind.h"
#include "vtxotlorder.h"
#include "vtxotlalias.h"
#include "vtxotlquery.h"
#include "vtxotlmbrprop.h"

#endif
