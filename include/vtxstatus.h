/*
 * vtxstatus.h -- status numbers of the outline library.
 *
 * 0 is success, -1 a silent refusal (a hidden member named in an edit, or a
 * property value load in progress).  Every positive number is a message
 * number with a text in the message catalogue of the host
 * (host/messages.cat).  The numbers are stable: hosts store and compare them.
 *
 * Families: 1030xxx are handed up by the object file service, 106xxxx are
 * the library's own (1060600 and above were added by this library), 12500xx
 * come from the paged store service.
 */
#ifndef VTXSTATUS_H
#define VTXSTATUS_H

#define VTX_STS_OK                       0        /* success */
#define VTX_STS_SILENT                   (-1)     /* refused without a message */

/* internal */
#define VTX_STS_POOL_MISSING             1        /* otlNewItem2: no pool of that size */

/* object file service */
#define VTX_STS_FILE_OPEN_FAILED         1030100  /* the outline file cannot be opened */
#define VTX_STS_PATH_NOT_CONVERTIBLE     1030107  /* the file path cannot be converted to the native character set */
#define VTX_STS_FILE_NOT_FOUND           1030212  /* the outline file does not exist */
#define VTX_STS_NO_LOCALE_TRAILER        1030316  /* the outline file carries no locale information and a prompt was asked for */

/* outline library */
#define VTX_STS_NULL_ARG                 1060001  /* a required argument is null */
#define VTX_STS_BAD_OUTLINE_TYPE         1060002  /* outline type out of range */
#define VTX_STS_BAD_SORT_TYPE            1060003  /* sort type out of range */
#define VTX_STS_NO_COMPARE_FUNC          1060004  /* sort type 2 without a comparison function */
#define VTX_STS_NO_TIME_DIM              1060008  /* the outline has no dimension tagged as time */
#define VTX_STS_INVALID_NAME             1060010  /* invalid member name */
#define VTX_STS_BAD_CONSOLIDATION        1060011  /* consolidation out of range */
#define VTX_STS_ILLEGAL_MOVE             1060013  /* member cannot be moved there */
#define VTX_STS_NO_DIMENSION             1060014  /* the member record belongs to no dimension */
#define VTX_STS_VERIFY_ILLEGAL_NAME      1060015  /* verification: illegal member name */
#define VTX_STS_DUPLICATE_NAME           1060016  /* duplicate member name (also a shared member made unshared) */
#define VTX_STS_BAD_CURRENCY_SETTING     1060017  /* invalid currency conversion setting or currency member name */
#define VTX_STS_ILLEGAL_ALIAS            1060018  /* alias empty or illegal */
#define VTX_STS_ILLEGAL_COMBO_ALIAS      1060019  /* illegal alias in an alias combination */
#define VTX_STS_ILLEGAL_COMBO_MEMBERS    1060020  /* bad member specification in an alias combination */
#define VTX_STS_CURRENCY_CATEGORY        1060021  /* currency category in the wrong outline kind */
#define VTX_STS_TIME_BALANCE_NO_TIME     1060022  /* time balance members need a time dimension */
#define VTX_STS_ALIAS_NOT_UNIQUE         1060023  /* alias equals another member's name or alias */
#define VTX_STS_ATTR_MEMBER_FORMULA      1060024  /* attribute members cannot have formulas */
#define VTX_STS_SHARED_HAS_CHILDREN      1060025  /* shared members cannot have children */
#define VTX_STS_SHARED_NO_STORED         1060026  /* shared member without a stored member */
#define VTX_STS_LABEL_NO_CHILD           1060028  /* label-only member without children */
#define VTX_STS_BAD_TIME_BALANCE         1060030  /* time balance setting out of range */
#define VTX_STS_BAD_SKIP                 1060031  /* skip setting out of range */
#define VTX_STS_BAD_SHARE                1060032  /* share (data storage) setting not allowed */
#define VTX_STS_BAD_STORAGE              1060033  /* dense/sparse setting out of range */
#define VTX_STS_BAD_STORAGE_CATEGORY     1060034  /* storage category out of range */
#define VTX_STS_ILLEGAL_UDA              1060036  /* illegal user-defined attribute text */
#define VTX_STS_UDA_NOT_FOUND            1060037  /* user-defined attribute not set on the member */
#define VTX_STS_TOO_MANY_ALIAS_TABLES    1060038  /* alias table limit reached */
#define VTX_STS_BAD_ALIAS_TABLE_NAME     1060039  /* alias table name empty or too long */
#define VTX_STS_ALIAS_TABLE_EXISTS       1060040  /* alias table exists */
#define VTX_STS_ALIAS_TABLE_RESERVED     1060042  /* alias table may not be deleted */
#define VTX_STS_TEMP_NAME_FAILED         1060044  /* no temporary file name could be made */
#define VTX_STS_BAD_TRANSACTION_TYPE     1060045  /* unknown transaction type */
#define VTX_STS_FILE_CANNOT_OPEN         1060046  /* the outline file cannot be opened */
#define VTX_STS_WRITE_FAILED             1060047  /* writing the outline file failed */
#define VTX_STS_CURRENCY_TOO_MANY_DIMS   1060049  /* a currency outline holds at most three dimensions */
#define VTX_STS_BAD_ATTR_SPEC_NAME       1060050  /* empty or reserved name in the attribute specifications */
#define VTX_STS_NAME_EXISTS              1060051  /* member name exists in an outline of unique names */
#define VTX_STS_AUTOCONFIG_TOO_MANY_DIMS 1060052  /* dense/sparse auto-configuration is limited to 25 dimensions */
#define VTX_STS_VERIFY_REFUSED           1060053  /* verification errors refuse the save */
#define VTX_STS_GENLEV_NAME_NOT_FOUND    1060054  /* no generation or level name at that number */
#define VTX_STS_ILLEGAL_GENLEV_NAME      1060055  /* illegal generation or level name */
#define VTX_STS_GENLEV_NAME_IN_USE       1060056  /* generation or level name used elsewhere */
#define VTX_STS_NOT_A_DIMENSION          1060057  /* a dimension call on a member */
#define VTX_STS_FORMULA_NOT_ALLOWED      1060058  /* shared and label-only members cannot have formulas */
#define VTX_STS_GENLEV_OUT_OF_RANGE      1060061  /* generation or level number out of range */
#define VTX_STS_SHARED_UDA               1060064  /* shared members cannot have user-defined attributes */
#define VTX_STS_GENLEV_NAME_IS_MEMBER    1060065  /* generation or level name equals a member name */
#define VTX_STS_GENLEV_NAME_CLASH        1060066  /* a generation or level name equals a member name or alias */
#define VTX_STS_SAME_ALIAS_TABLE         1060067  /* copy of an alias table onto itself */
#define VTX_STS_WRONG_MODE               1060068  /* the outline was opened in the wrong mode */
#define VTX_STS_BAD_SELECTOR             1060069  /* selector value out of range */
#define VTX_STS_DYNAMIC_NO_FORMULA       1060070  /* dynamic member without formula or children */
#define VTX_STS_DYNAMIC_ONLY_CHILD       1060072  /* dynamic only child of a stored parent */
#define VTX_STS_DIM_NO_MEMBERS           1060074  /* warning: a dimension without members */
#define VTX_STS_BAD_DTS_NAME             1060075  /* not a dynamic time series name */
#define VTX_STS_BAD_DATA_MEMBER          1060076  /* data member of a dimension delete is not stored */
#define VTX_STS_DTS_GENNAME_MISSING      1060077  /* generation name of an enabled dynamic time series member is gone */
#define VTX_STS_ATTR_DIM_NOT_ASSOCIATED  1060081  /* attribute dimension not associated with the member's dimension */
#define VTX_STS_ATTR_WRONG_LEVEL         1060082  /* member not at the association level */
#define VTX_STS_NOT_ATTR_MEMBER          1060083  /* the member is not an attribute member */
#define VTX_STS_BASE_IS_ATTR             1060084  /* attribute members take no attributes */
#define VTX_STS_ATTR_NOT_LEVEL0          1060085  /* only level-0 attribute members can be associated */
#define VTX_STS_ATTR_DIM_OTHER_BASE      1060086  /* attribute dimension bound to another base, or not associated */
#define VTX_STS_ATTR_DIM_NOT_SPARSE      1060087  /* associations need sparse dimensions */
#define VTX_STS_ATTR_NOT_ASSOCIATED      1060088  /* the attribute is not associated with the member */
#define VTX_STS_ATTR_DIM_NOT_LAST        1060089  /* attribute dimensions stand after standard ones */
#define VTX_STS_BASE_IS_SHARED           1060090  /* shared and label-only members take no attributes */
#define VTX_STS_ATTR_NAME_TOO_LONG       1060091  /* generated attribute member name too long */
#define VTX_STS_ATTR_SPEC_NAME_LONG      1060092  /* attribute specification name too long */
#define VTX_STS_BAD_GEN_NAME_BY          1060093  /* attribute name position out of range */
#define VTX_STS_BAD_USE_NAME_OF          1060094  /* attribute name prefix or suffix setting out of range */
#define VTX_STS_BAD_DELIMITER            1060095  /* attribute name delimiter out of range */
#define VTX_STS_BAD_DATE_FORMAT          1060096  /* attribute date format out of range */
#define VTX_STS_BAD_BUCKETING            1060097  /* attribute bucketing type out of range */
#define VTX_STS_ATTR_NOT_NUMERIC         1060098  /* numeric attribute name is no number */
#define VTX_STS_ATTR_NOT_BOOLEAN         1060099  /* Boolean attribute name is no Boolean value */
#define VTX_STS_ATTR_NOT_DATE            1060100  /* date attribute name is no date */
#define VTX_STS_ATTR_BAD_MEMBER          1060101  /* invalid member in an attribute dimension */
#define VTX_STS_ATTR_TYPE_MISMATCH       1060102  /* attribute member value does not match its dimension type */
#define VTX_STS_ATTR_LEVEL_MISMATCH      1060103  /* attribute associations at different levels */
#define VTX_STS_ATTR_BAD_PARENT          1060104  /* member setting not allowed under its parent in attribute verification */
#define VTX_STS_ATTR_MEMBER_UDA          1060105  /* attribute members cannot have user-defined attributes */
#define VTX_STS_EXTENDED_ERRORS          1060106  /* member breaks aggregate storage, time or typed member rules */
#define VTX_STS_ILLEGAL_OPERATION        1060107  /* illegal operation for the member */
#define VTX_STS_BAD_ATTR_ASSOC           1060108  /* invalid attribute association */
#define VTX_STS_ATTR_ASSOC_SHARED        1060109  /* attribute association on a shared member */
#define VTX_STS_ATTR_ASSOC_DIM           1060110  /* attribute association on a dimension */
#define VTX_STS_ATTR_MEMBER_SETTINGS     1060112  /* attribute member with calculation settings */
#define VTX_STS_ATTR_ASSOC_DEAD          1060113  /* association with a deleted attribute member */
#define VTX_STS_ATTR_CALC_DIM_FAILED     1060114  /* attribute calculations dimension not created */
#define VTX_STS_ATTR_CALC_NAME_USED      1060115  /* attribute calculation name in use */
#define VTX_STS_BASE_IS_DIM              1060116  /* a dimension cannot take an attribute member */
#define VTX_STS_ATTR_RENAME_CLASH        1060118  /* renaming attribute members clashes */
#define VTX_STS_ATTR_NAME_EXISTS         1060119  /* attribute member name used by another member */
#define VTX_STS_ATTR_MAP_NO_MEMNO        1060121  /* member without a number in the attribute map */
#define VTX_STS_HEADER_TOO_LONG          1060122  /* header text too long for a non-Unicode application */
#define VTX_STS_UTF8_APP_REFUSED         1060123  /* Unicode outline refused for a non-Unicode application */
#define VTX_STS_COMMENT_TOO_LONG_OLD     1060124  /* comment too long for a non-Unicode application */
#define VTX_STS_TARGET_NOT_UNICODE       1060126  /* Unicode outline bound for a native target */
#define VTX_STS_UTF8_API_REFUSED         1060127  /* Unicode outline refused for a non-Unicode client */
#define VTX_STS_CODEPAGE_NOT_SUBSET      1060128  /* target code page does not hold the input code page */
#define VTX_STS_UTF8_NOT_CONVERTIBLE     1060129  /* Unicode outline cannot become native */
#define VTX_STS_PREV_NOT_DIM             1060133  /* previous sibling of a dimension is no dimension */
#define VTX_STS_MOVE_CHANGES_GEN1        1060134  /* a move may not make a dimension a member or a member a dimension */
#define VTX_STS_OPG_MOVE_ATTR            1060135  /* incremental paged outline: move across attribute and standard dimensions */
#define VTX_STS_OPG_MOVE_DIMS            1060136  /* incremental paged outline: move between dimensions */
#define VTX_STS_OPG_SORT_DIMS            1060139  /* incremental paged outline: dimensions cannot be sorted */
#define VTX_STS_CURRENCY_TO_AGG          1060140  /* a currency outline cannot become aggregate storage */
#define VTX_STS_TWO_PASS_PARENT          1060141  /* two-pass dynamic member under a dynamic parent that is not two-pass */
#define VTX_STS_ATTR_BAD_SETTING         1060142  /* attribute member setting not allowed */
#define VTX_STS_ASO_TOO_MANY_LEVELS      1060143  /* stored level combinations exceed the aggregate storage limit */
#define VTX_STS_ASO_STORED_FORMULA       1060144  /* formula in a stored hierarchy */
#define VTX_STS_ASO_LABEL_FORMULA        1060145  /* label-only member with a formula in a dynamic hierarchy */
#define VTX_STS_ASO_ONE_CHILD            1060146  /* single consolidating child in a dynamic hierarchy */
#define VTX_STS_ASO_ONE_CHILD_NO_FORMULA 1060147  /* single child and no formula in a dynamic hierarchy */
#define VTX_STS_ASO_LABEL_LEVEL          1060149  /* label-only setting at the wrong level of a stored hierarchy */
#define VTX_STS_ASO_STORED_CONSOLIDATION 1060150  /* operator other than addition in a stored hierarchy */
#define VTX_STS_ASO_BAD_MEMBER           1060151  /* member not allowed in an aggregate storage hierarchy */
#define VTX_STS_ASO_REMOVE_MEMBER        1060152  /* member to be removed for aggregate storage */
#define VTX_STS_ASO_DTS                  1060153  /* dynamic time series set on an aggregate storage time dimension */
#define VTX_STS_ASO_BAD_SETTING          1060154  /* member setting not allowed in aggregate storage */
#define VTX_STS_VARYING_NOT_ENABLED      1060159  /* varying associations while varying attributes are off */
#define VTX_STS_INDEP_DIM_IN_USE         1060160  /* independent dimension still used by an association */
#define VTX_STS_INDEP_DIM_IS_BASE        1060161  /* independent dimension used as base */
#define VTX_STS_BAD_INDEP_TUPLE          1060162  /* wrong count or dimension of independent members */
#define VTX_STS_ASSOC_VARIES             1060163  /* the association varies */
#define VTX_STS_BAD_INDEP_DIMS           1060164  /* invalid independent dimensions */
#define VTX_STS_INDEP_HAS_CHILDREN       1060165  /* independent member with children */
#define VTX_STS_INDEP_BAD_MEMBER         1060166  /* independent member not valid */
#define VTX_STS_INDEP_DIM_DELETE         1060167  /* delete of an independent dimension */
#define VTX_STS_INDEP_MEMBER_DELETE      1060168  /* delete of an independent member */
#define VTX_STS_INDEP_SHARED             1060169  /* shared, label-only or implied share independent member */
#define VTX_STS_INDEP_NOT_NUMBERED       1060170  /* independent member without a number */
#define VTX_STS_BAD_RANGE_ORDER          1060171  /* range begins after its end */
#define VTX_STS_ASO_SHARED_SAME_HIER     1060172  /* shared member against its stored member's hierarchy */
#define VTX_STS_ASO_HIER_BROKEN          1060173  /* hierarchy of a shared member broken */
#define VTX_STS_ASO_SHARED_PLACE         1060174  /* recorded place of a shared member is stale */
#define VTX_STS_ASO_MULTI_HIER_LABEL     1060175  /* multiple-hierarchy dimension not label-only */
#define VTX_STS_ASO_DYN_SHARED           1060176  /* shared member in a dynamic hierarchy */
#define VTX_STS_ASSOC_IS_VARYING         1060177  /* varying association removed the plain way */
#define VTX_STS_TOO_MANY_VARYING         1060178  /* varying association entries exhausted */
#define VTX_STS_ASO_OLD_SHARED           1060179  /* shared member in an old aggregate storage outline */
#define VTX_STS_ASO_FIRST_HIER_DYNAMIC   1060180  /* first hierarchy of a multiple-hierarchy dimension is dynamic */
#define VTX_STS_ASO_OLD_FORMULA          1060181  /* formula in an old aggregate storage outline */
#define VTX_STS_ASSOC_NOT_VARYING        1060182  /* the association does not vary */
#define VTX_STS_NOT_ATTR_DIM             1060183  /* not an attribute dimension */
#define VTX_STS_BAD_RANGE_BEGIN          1060184  /* complete end with an incomplete beginning */
#define VTX_STS_ASO_OLD_HIER             1060185  /* multiple or dynamic hierarchies in an old aggregate storage outline */
#define VTX_STS_TOO_MANY_DIMS            1060186  /* 255 dimensions already */
#define VTX_STS_BAD_SOLVE_ORDER          1060187  /* negative solve order */
#define VTX_STS_SHARED_BEFORE_STORED     1060189  /* warning: shared member before its stored member */
#define VTX_STS_NO_DIM_ID                1060190  /* dimension identifiers used up */
#define VTX_STS_OPG_LOG_OPEN             1060191  /* the paged outline write log cannot be opened */
#define VTX_STS_ASO_DYN_ATTR             1060192  /* member with attributes and children or formula in a dynamic hierarchy */
#define VTX_STS_SHARED_SAME_PARENT       1060193  /* shared member with that parent exists */
#define VTX_STS_NOT_FOUND                1060200  /* member not found */
#define VTX_STS_DIM_NOT_UNIQUE           1060202  /* dimension name must be unique */
#define VTX_STS_SIBLING_NOT_UNIQUE       1060203  /* member name must be unique among its siblings */
#define VTX_STS_UNIQUE_NAME_TABLE        1060204  /* the "Unique Name" alias table is read-only */
#define VTX_STS_DUP_RULE_CONFLICT        1060205  /* alias or share clashes with the duplicate-name rules */
#define VTX_STS_ALIAS_USED_BY_MEMBER     1060206  /* alias used by another member in the table */
#define VTX_STS_ALIAS_IS_MEMBER_NAME     1060207  /* alias used as another member's name */
#define VTX_STS_ALIAS_IN_OTHER_TABLE     1060208  /* alias used by another member in another table */
#define VTX_STS_DUP_IN_UNIQUE_DIM        1060209  /* duplicate name in a dimension of unique names */
#define VTX_STS_DUP_AT_UNIQUE_LEVEL      1060210  /* duplicate name at a level of unique names */
#define VTX_STS_DUP_AT_UNIQUE_GEN        1060211  /* duplicate name at a generation of unique names */
#define VTX_STS_DUP_OFF_REFUSED          1060212  /* duplicate names cannot be turned off */
#define VTX_STS_MEMBER_ID_IN_USE         1060213  /* member identifier in use */
#define VTX_STS_DUP_OLD_AGG              1060214  /* duplicate names need a newer aggregate storage version */
#define VTX_STS_DUP_REQUIRED             1060215  /* call needs an outline of duplicate names */
#define VTX_STS_GEN2_CAN_MOVE            1060216  /* a generation-2 member of that name could be moved instead */
#define VTX_STS_DUP_WITH_DIM             1060217  /* member name equals a dimension name */
#define VTX_STS_STORED_NOT_FOUND         1060218  /* stored member for a share not found */
#define VTX_STS_SHARED_UNDER_STORED      1060220  /* shared member below its stored member */
#define VTX_STS_VARYING_OLD              1060222  /* varying attributes for an old server or old aggregate storage */
#define VTX_STS_DUP_OLD_SERVER           1060223  /* duplicate names for an old server */
#define VTX_STS_MEMBER_ID_TOO_LONG       1060225  /* member identifier over 1023 bytes */
#define VTX_STS_BAD_CALENDAR             1060226  /* invalid calendar definition */
#define VTX_STS_CALENDAR_DATE            1060227  /* calendar date computation failed */
#define VTX_STS_FORMULA_REWRITE          1060229  /* member names of a formula could not be processed */
#define VTX_STS_TOO_MANY_ATTR_VALUES     1060230  /* too many generated attribute members */
#define VTX_STS_ONE_TIME_HIER            1060231  /* only one time hierarchy or time dimension */
#define VTX_STS_TI_LINKED_ATTR           1060232  /* invalid linked attribute dimension of the time dimension */
#define VTX_STS_TI_DATE_SPAN             1060233  /* time member date spans broken */
#define VTX_STS_TI_LEVELS                1060234  /* time dimension levels do not match its linked attributes */
#define VTX_STS_TI_ATTR_ORDER            1060235  /* linked attribute members out of time order */
#define VTX_STS_TI_CONSOLIDATION         1060236  /* time member with an operator other than addition */
#define VTX_STS_ASO_SHARED_NOT_LEVEL0    1060238  /* shared member place with a member above level 0 */
#define VTX_STS_FLOW_MEMBER              1060239  /* invalid flow member */
#define VTX_STS_CAL_YEAR_WEEKS           1060240  /* the weeks of a year do not fit the calendar */
#define VTX_STS_CAL_PERIOD_EXTRA_WEEK    1060241  /* 53-week year without a period for the extra week */
#define VTX_STS_CAL_MONTH_EXTRA_WEEK     1060242  /* 53-week year without a month for the extra week */
#define VTX_STS_BAD_AGG_LEVEL_USAGE      1060243  /* invalid aggregate level usage */
#define VTX_STS_OPG_VERSION_SET          1060251  /* paged outline version cannot be set */
#define VTX_STS_FILE_DOES_NOT_EXIST      1060253  /* the outline file does not exist */
#define VTX_STS_ATTR_BASE_COMPRESSION    1060254  /* compression dimension as attribute base */
#define VTX_STS_ASO_TB_DYNAMIC_TIME      1060259  /* time balance with a dynamic time hierarchy */
#define VTX_STS_TIME_GENNAME             1060260  /* warning: time dimension generation names not set */
#define VTX_STS_BAD_QUERY_HINT           1060261  /* query hint without members */
#define VTX_STS_ASO_BAD_STORAGE          1060263  /* storage setting not allowed in aggregate storage */
#define VTX_STS_ILLEGAL_SMARTLIST_NAME   1060264  /* illegal text list name */
#define VTX_STS_SMARTLIST_EXISTS         1060265  /* text list name in use */
#define VTX_STS_TYPED_NOT_ALLOWED        1060267  /* member type not allowed for the member */
#define VTX_STS_MBRTYPE_OLD_AGG          1060269  /* typed members need a newer aggregate storage version */
#define VTX_STS_TYPED_OLD_OPG            1060270  /* member types in an old paged outline */
#define VTX_STS_BAD_INDEP_ORDER          1060273  /* continuous independent dimension before a discrete one */
#define VTX_STS_BAD_INDEP_TYPE           1060274  /* independent dimension type out of range */
#define VTX_STS_FLEX_ACCOUNTS            1060275  /* accounts dimension made flexible */
#define VTX_STS_FLEX_STRUCTURE           1060276  /* invalid hierarchy of a flexible dimension */
#define VTX_STS_FLEX_LEVEL0              1060277  /* invalid level-0 member of a flexible dimension */
#define VTX_STS_SMARTLIST_STATE          1060278  /* text lists not changeable in this state */
#define VTX_STS_SMARTLIST_NOT_FOUND      1060279  /* text list or its elements missing */
#define VTX_STS_SMARTLIST_IN_USE         1060280  /* text list still used by members */
#define VTX_STS_BAD_SMARTLIST_TEXT       1060281  /* illegal text list name or element */
#define VTX_STS_SMARTLIST_DUP_ID         1060282  /* duplicate text list element identifier */
#define VTX_STS_BAD_MEMBER_TYPE          1060283  /* member type out of range */
#define VTX_STS_FORMAT_TOO_LONG_OLD      1060287  /* format string too long for a non-Unicode application */
#define VTX_STS_MBRTYPE_OFF_REFUSED      1060289  /* typed members cannot be turned off */
#define VTX_STS_EDIT_PROHIBITED          1060291  /* save and reopen before editing */
#define VTX_STS_IMPLIED_SHARE_OLD        1060292  /* implied share setting needs a newer aggregate storage version */
#define VTX_STS_SMARTLIST_STORE_CLASH    1060293  /* paged store reports a text list clash */
#define VTX_STS_INDEP_NO_VARYING         1060295  /* independent dimension without varying attributes */
#define VTX_STS_BAD_VALIDITY_TYPE        1060297  /* validity set type out of range */
#define VTX_STS_VARYING_OLD_AGG          1060300  /* varying attributes in an old aggregate storage outline */
#define VTX_STS_SMARTLIST_TOO_BIG        1060301  /* too many text list elements */
#define VTX_STS_TYPED_SHARED             1060305  /* shared or implied share member given a type */
#define VTX_STS_FORMAT_MISMATCH          1060307  /* format string differs from the first child's */
#define VTX_STS_RELAXED_OLD_AGG          1060309  /* relaxed names need a newer aggregate storage version */
#define VTX_STS_ATTR_SLOT_FILLED         1060310  /* member already has an attribute of that dimension */
#define VTX_STS_ATTR_ASSOC_LEVEL         1060311  /* association at a level other than the dimension's */
#define VTX_STS_ASO_SHARED_TOO_MANY      1060312  /* shared member with more places than its stored member */
#define VTX_STS_ASO_SHARED_NEIGHBOURS    1060313  /* shared member's neighbours differ from the stored member's */
#define VTX_STS_TEXT_NO_SMARTLIST        1060314  /* text member without a text list */
#define VTX_STS_TYPED_OTHER_DIM          1060315  /* typed members in more than one dimension */
#define VTX_STS_OPG_NEED_ENV             1060316  /* paged outline upgrade without a store environment */
#define VTX_STS_BAD_REVISION             1060317  /* outline file revision not supported */
#define VTX_STS_LOOKUP_FAILED            1060318  /* qualified member lookup failed */
#define VTX_STS_ALIAS_TABLE_NOT_FOUND    1060322  /* alias table does not exist */
#define VTX_STS_BAD_FIELD_ID             1060332  /* unknown member field identifier */
#define VTX_STS_NOT_A_DIM_NAME           1060337  /* the name is no dimension */
#define VTX_STS_EXPORT_OPEN_FAILED       1060338  /* export file cannot be opened */
#define VTX_STS_ASSOC_NOT_DIMS           1060339  /* association of members that are no dimensions */
#define VTX_STS_ATTR_BASE_IS_ATTR        1060340  /* attribute dimension as base */
#define VTX_STS_ATTRIBUTE_ERRORS         1060344  /* member with attribute verification errors */
#define VTX_STS_UNIQUE_IN_DIM            1060345  /* dimension allows only unique members */
#define VTX_STS_UNIQUE_AT_GEN            1060347  /* generation allows only unique members */
#define VTX_STS_FIELD_NOT_FETCHED        1060348  /* field not brought back by the query */
#define VTX_STS_INFO_NOT_FETCHED         1060349  /* member information not brought back by the query */
#define VTX_STS_TEXT_TRUNCATED           1060352  /* text cut to fit its buffer */
#define VTX_STS_NO_DIM_FOUND             1060355  /* member without a reachable dimension */
#define VTX_STS_ATTR_MAP_TOO_BIG         1060357  /* attribute bit map too large */
#define VTX_STS_NO_MEMORY                1060358  /* out of memory */
#define VTX_STS_MOVE_OTHER_DIM           1060359  /* move into another dimension */
#define VTX_STS_ALIAS_POLICY_AGG         1060360  /* alias table option only for aggregate storage */
#define VTX_STS_RENEGADE_CLEARED         1060362  /* info: the renegade member was deleted */
#define VTX_STS_RENEGADE_NOT_LEVEL0      1060363  /* renegade member not at level 0 */
#define VTX_STS_RENEGADE_SHARED          1060365  /* renegade member is shared */
#define VTX_STS_RENEGADE_FORMULA         1060366  /* renegade member with a formula */
#define VTX_STS_RENEGADE_INVALID         1060369  /* invalid renegade member */
#define VTX_STS_ZERO_ID                  1060371  /* zero dimension or member identifier */
#define VTX_STS_BAD_NAME_TYPE            1060377  /* name type out of range */
#define VTX_STS_NAMETYPE_1_TO_2          1060378  /* duplicate names cannot become relaxed names */
#define VTX_STS_NAMETYPE_1_TO_0          1060379  /* duplicate names cannot become unique names */
#define VTX_STS_NAMETYPE_2_TO_0          1060380  /* relaxed names cannot become unique names */
#define VTX_STS_NAMETYPE_2_TO_1          1060381  /* relaxed names cannot become duplicate names */
#define VTX_STS_PATH_UNCLOSED            1060382  /* member path with an unclosed bracket */
#define VTX_STS_PATH_NO_OPEN             1060383  /* member path segment without an opening bracket */
#define VTX_STS_PATH_TRAILING            1060384  /* text after a closing bracket of a member path */
#define VTX_STS_PATH_NOT_COMBINED        1060385  /* parent and child paths cannot be combined */
#define VTX_STS_BAD_OPG_VERSION          1060386  /* paged outline version unknown */
#define VTX_STS_BAD_SECURITY_BLOCK       1060389  /* outline security block invalid */
#define VTX_STS_NO_SERVER_KEY            1060390  /* enciphered outline and no server key */
#define VTX_STS_BAD_QUERY_TYPE           1060394  /* member query type unknown */
#define VTX_STS_QUERY_NOT_SUPPORTED      1060395  /* member query type not served */
#define VTX_STS_QUERY_OPTION             1060396  /* member query option refused */
#define VTX_STS_POSITION_COUNT_ONLY      1060397  /* position query without count mode */
#define VTX_STS_EXPORT_NO_MEMBER         1060398  /* export member not found */
#define VTX_STS_EXPORT_NAME_CHANGED      1060399  /* info: export file name changed to fit */
#define VTX_STS_KEY_TOO_LONG             1060409  /* member key over its limit */
#define VTX_STS_DTS_IN_AGG               1060410  /* dynamic time series in aggregate storage */
#define VTX_STS_TOO_MANY_PROPERTIES      1060501  /* property definitions of a dimension exhausted */
#define VTX_STS_PROPERTY_NOT_FOUND       1060502  /* property definition not found */
#define VTX_STS_ILLEGAL_PROPERTY_NAME    1060503  /* illegal property name */
#define VTX_STS_PROPERTY_EXISTS          1060504  /* property name defined in the dimension */
#define VTX_STS_BAD_PROPERTY_TYPE        1060505  /* property type out of range */
#define VTX_STS_BAD_PROPERTY_FLAGS       1060506  /* property flags not allowed */
#define VTX_STS_PROPERTY_DEFAULT_TYPE    1060507  /* default value of another type */
#define VTX_STS_PROPERTY_CHANGE_REFUSED  1060508  /* change not allowed by the definition */
#define VTX_STS_SYSPROP_RENAME           1060509  /* a system property cannot be renamed */
#define VTX_STS_PROPERTY_LOADING         1060510  /* definitions fixed while values load */
#define VTX_STS_PV_LOAD_ENDED            1060511  /* property value loading ended and cannot restart */
#define VTX_STS_PV_LOAD_DISABLED         1060512  /* property value loading already disabled */
#define VTX_STS_PV_LOG_FAILED            1060513  /* property value log not created */
#define VTX_STS_PV_NOT_BOOLEAN           1060514  /* property value is no Boolean */
#define VTX_STS_PV_NOT_NUMERIC           1060515  /* property value is no number */
#define VTX_STS_PV_NOT_DATE              1060517  /* property value is no date */
#define VTX_STS_PV_NOT_ENABLED           1060518  /* property value changes not enabled */
#define VTX_STS_BAD_SYSPROP_ID           1060521  /* system property id out of range */
#define VTX_STS_NO_PROPERTIES            1060532  /* dimension does not take properties */
#define VTX_STS_INVALID_CHARS            1060536  /* characters invalid in the locale replaced */
#define VTX_STS_PROPERTY_NAME_LONG       1060538  /* warning: property name too long */
#define VTX_STS_PROPERTY_DEFAULT_LONG    1060539  /* string default too long */

/* numbers this library adds to the family, from 1060600 on */
#define VTX_STS_OLD_CLIENT               1060600  /* a name does not fit the record of a client older than 5.0 */
#define VTX_STS_BAD_LOCALE               1060601  /* locale name not understood or character set unknown */
#define VTX_STS_TEXT_TOO_LONG            1060602  /* text does not fit the output buffer */
#define VTX_STS_BAD_TEXT                 1060603  /* text not well formed in its character set */
#define VTX_STS_DUP_CONVERT_UNAVAILABLE  1060610  /* duplicate names are turned on through adShrOtlSetOutlineInfo only */
#define VTX_STS_TOO_DEEP                 1060620  /* a member would stand deeper than generation 127 */
#define VTX_STS_BAD_PLACEMENT            1060621  /* parent and previous sibling disagree, or a handle of another outline */
#define VTX_STS_NOT_AVAILABLE            1060622  /* needs a part of the outline this build does not serve yet */
#define VTX_STS_KEY_OUTSIDE_VERIFY       1060623  /* member keys are built while the outline is verified or saved */
#define VTX_STS_KEY_NOT_DUPLICATE        1060624  /* a member whose name does not repeat takes no key */

/* paged store service */
#define VTX_STS_OPG_CREATE               1250001  /* paged store: section cannot be created */
#define VTX_STS_OPG_OPEN                 1250002  /* paged store: section cannot be opened */
#define VTX_STS_OPG_ENV_CREATE           1250005  /* paged store: environment cannot be created */
#define VTX_STS_OPG_ENV_OPEN             1250006  /* paged store: environment cannot be opened */
#define VTX_STS_OPG_CACHE_SIZE           1250007  /* paged store: cache size refused */
#define VTX_STS_OPG_GET                  1250027  /* paged store: read failed */
#define VTX_STS_OPG_PUT                  1250029  /* paged store: write failed */

#endif
