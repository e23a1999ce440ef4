#pragma once

#include "core/CommonExport.h"

#include <QString>

// Texts used across the library and its hosts, each named for its text. A
// name with "Ex" is the same sign with a blank around or behind it.
extern COMMON_EXPORT QString const ks_null;
extern COMMON_EXPORT QString const ks_cr;
extern COMMON_EXPORT QString const ks_newLine;
extern COMMON_EXPORT QString const ks_newLine2;
extern COMMON_EXPORT QString const ks_dosNewLine;
extern COMMON_EXPORT QString const ks_dosNewLine2;
extern COMMON_EXPORT QString const ks_br;
extern COMMON_EXPORT QString const ks_paragraph;
extern COMMON_EXPORT QString const ks_space;
extern COMMON_EXPORT QString const ks_nbSpace;
extern COMMON_EXPORT QString const ks_colon;
extern COMMON_EXPORT QString const ks_colonEx;
extern COMMON_EXPORT QString const ks_pipe;
extern COMMON_EXPORT QString const ks_ellipsis;
extern COMMON_EXPORT QString const ks_ellipsis3;
extern COMMON_EXPORT QString const ks_tab;
extern COMMON_EXPORT QString const ks_tabHtml;
extern COMMON_EXPORT QString const ks_comma;
extern COMMON_EXPORT QString const ks_commaEx;
extern COMMON_EXPORT QString const ks_semicolon;
extern COMMON_EXPORT QString const ks_semicolonEx;
extern COMMON_EXPORT QString const ks_slash;
extern COMMON_EXPORT QString const ks_backSlash;
extern COMMON_EXPORT QString const ks_apostrophe;
extern COMMON_EXPORT QString const ks_quote;
extern COMMON_EXPORT QString const ks_point;
extern COMMON_EXPORT QString const ks_dash;
extern COMMON_EXPORT QString const ks_dashEx;
extern COMMON_EXPORT QString const ks_plus;
extern COMMON_EXPORT QString const ks_minus;
extern COMMON_EXPORT QString const ks_underscore;
extern COMMON_EXPORT QString const ks_openParenthesis;
extern COMMON_EXPORT QString const ks_openParenthesisEx;
extern COMMON_EXPORT QString const ks_closeParenthesis;
extern COMMON_EXPORT QString const ks_openBracket;
extern COMMON_EXPORT QString const ks_closeBracket;
extern COMMON_EXPORT QString const ks_openBrace;
extern COMMON_EXPORT QString const ks_closeBrace;
extern COMMON_EXPORT QString const ks_japaneseSample;
extern COMMON_EXPORT QString const ks_moreOrLess;
extern COMMON_EXPORT QString const ks_minusInfinite;
extern COMMON_EXPORT QString const ks_copyright;
extern COMMON_EXPORT QString const ks_trademark;
extern COMMON_EXPORT QString const ks_registered;
extern COMMON_EXPORT QString const ks_micro;
extern COMMON_EXPORT QString const ks_asterisk;
extern COMMON_EXPORT QString const ks_asteriskEx;
extern COMMON_EXPORT QString const ks_zero;
extern COMMON_EXPORT QString const ks_vertBar;
extern COMMON_EXPORT QString const ks_question;
extern COMMON_EXPORT QString const ks_ampersand;
extern COMMON_EXPORT QString const ks_dualAmpersand;
extern COMMON_EXPORT QString const ks_downArrow;
extern COMMON_EXPORT QString const ks_strongPlus;
extern COMMON_EXPORT QString const ks_strongMinus;
extern COMMON_EXPORT QString const ks_html_amp;
extern COMMON_EXPORT QString const ks_html_quote;
extern COMMON_EXPORT QString const ks_html_lower;
extern COMMON_EXPORT QString const ks_html_greater;
extern COMMON_EXPORT QString const ks_html_tick;
extern COMMON_EXPORT QString const ks_html_nbSpace;
