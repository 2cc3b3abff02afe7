#pragma once

// Identifiers shared by the program and its resource script.

#define IDD_NEW_BOOK 100

#define IDC_TEMPLATE_ENTERPRISE 1001
#define IDC_TEMPLATE_SMALL 1002
#define IDC_COMPANY 1003
#define IDC_FILE 1004
#define IDC_BROWSE 1005
#define IDC_TEMPLATE_EMPTY 1006
#define IDC_CODE_RULE 1007
#define IDC_RULE_TEXT 1008
#define IDC_CURRENCY 1009
