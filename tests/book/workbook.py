"""Workbooks as another program has them: "write FILE" makes one, "read FILE" prints what one holds."""
import sys

import openpyxl
from openpyxl.styles import Font


def write(path):
    book = openpyxl.Workbook()
    first = book.active
    first.title = "说明"
    first["B3"] = "科目表在下一张"
    sheet = book.create_sheet("科目 & 表")
    sheet.merge_cells("A1:D1")
    sheet["A1"] = "某公司会计科目表"
    sheet.append([])
    sheet.append(["科目编码", "科目名称", "类别", "余额方向", "封存", "部门核算"])
    sheet.append([1001, "库存现金", "资产", "借", False, None])
    sheet.append([1002.0, "银行存款", "资产", "借", True, 1])
    sheet.append([])
    sheet.append(["100201", "O'Brien & Söhne <𠮷>\n两行", None, None, None, "√"])
    sheet["A20"] = 2202
    sheet["B20"] = '=CONCATENATE("应付","账款")'
    sheet["C20"] = "负债"
    sheet["A20"].font = Font(bold=True)
    book.save(path)


def read(path):
    book = openpyxl.load_workbook(path)
    sheet = book.active
    print(sheet.title, sheet.max_row, sheet.max_column, sheet.freeze_panes, sheet.print_title_rows)
    print([sheet.cell(2, column).data_type for column in (1, 2)], sheet.cell(2, 1).number_format)
    depths = [str(sheet.row_dimensions[row].outlineLevel) for row in range(2, 12)]
    print("".join(depths), sheet.sheet_properties.outlinePr.summaryBelow)
    for row in sheet.iter_rows(min_row=2, max_col=2, values_only=True):
        print(repr(row[0]), ascii(row[1]))


{"write": write, "read": read}[sys.argv[1]](sys.argv[2])
