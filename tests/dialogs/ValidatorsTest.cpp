#include "qvcommon/Validators.h"

#include "tests/support/FileTests.h"
#include "tests/support/RecordingMessageBox.h"

namespace {

constexpr int kEdit = 101, kCombo = 102, kFiltered = 103;

struct DigitsOnly : CCharacterFilterEdit {
    bool IsAccepted(std::string_view c) const override { return c >= "0" && c <= "9"; }
};

class ValidatorsTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dialog.Create(CWnd::dialog));
        ASSERT_TRUE(edit.Create(CWnd::edit, &dialog, kEdit));
        ASSERT_TRUE(combo.Create(CWnd::comboBox, &dialog, kCombo));
        ASSERT_TRUE(filtered.Create(CWnd::edit, &dialog, kFiltered));
    }
    std::string TextOf(int id) {
        CString text;
        dialog.GetDlgItem(id)->GetWindowText(text);
        return text.AsStd();
    }
    /// The message of a check that fails; "fine" for one that passes. None fails while the dialog is filled.
    template <class Check>
    std::string Message(Check check, int answer = 1) {
        const RecordingMessageBox box(answer);
        CDataExchange filling(&dialog, 0), saving(&dialog, 1);
        check(&filling);
        EXPECT_TRUE(box.shown.empty());
        saving.PrepareEditCtrl(kEdit);
        const bool failed = Raised<CUserException>([&] { check(&saving); }) != nullptr;
        if (!failed) return "fine";
        return box.shown.empty() ? "" : box.shown[0].text + " " + std::to_string(box.shown[0].style);
    }

    CWnd dialog, edit, combo;
    DigitsOnly filtered;
};

TEST_F(ValidatorsTest, ReportReasonForFailure) {
    const TempFolder folder;
    folder.Write("file", "");
    const auto chars = [](const char* text) { return [=](CDataExchange* e) { DDV_ReservedChars(e, text, "\\/:"); }; };
    const auto word = [](const char* text) { return [=](CDataExchange* e) { DDV_ReservedWord(e, text, "con"); }; };
    const auto path = [&](const char* name) {
        return [&folder, name](CDataExchange* e) { DDV_ValidPath(e, folder / name); };
    };
    EXPECT_EQ(Message([](CDataExchange* e) { DDV_NotEmpty(e, ""); }), "The field can not be blank. 48");
    EXPECT_EQ(Message([](CDataExchange* e) { DDV_NotEmpty(e, " "); }), "fine");
    EXPECT_EQ(Message(path("none")), "The path specified can not be found 48");
    EXPECT_EQ(Message(path("file")), "fine");
    EXPECT_EQ(Message(chars("a:b/")), "The ':' character is not valid in this field. 48");
    EXPECT_EQ(Message(chars("ab")), "fine");
    EXPECT_EQ(Message(word("SeCOnd")), "The 'con' word is reserved and not valid in this field. 48");
    EXPECT_EQ(Message(word("Conic")), "The 'con' word is reserved and not valid in this field. 48");
    EXPECT_EQ(Message(word("co n")), "fine");
    const auto valid = [&](CDataExchange* e) { DDV_ValidDir(e, folder / "new"); };
    EXPECT_EQ(Message(valid, 7), "The directory specified can not be found.  Would you like to create it? 52");
    EXPECT_EQ(Message(valid, 6), "fine");
    EXPECT_TRUE(folder.Has("new"));
}

TEST_F(ValidatorsTest, RequireCheckedListItem) {
    CCheckListBox list;
    ASSERT_TRUE(list.Create(CWnd::listBox, &dialog, 9));
    const auto some = [&](CDataExchange* e) { DDV_SomeListItemsChecked(e, list); };
    for (const char* const text : {"a", "b", "c"}) {
        EXPECT_EQ(Message(some), "You must select at least one option. 48");
        list.AddString(text);
    }
    list.SetCheck(1, 2);  // the third state
    EXPECT_EQ(Message(some), "You must select at least one option. 48");
    list.SetCheck(2, 1);
    EXPECT_EQ(list.GetCount() * 10 + list.GetCheck(2), 31);
    EXPECT_EQ(Message(some), "fine");
}

TEST_F(ValidatorsTest, FailureRecordsControl) {
    const RecordingMessageBox box;
    CDataExchange saving(&dialog, 1);
    saving.PrepareEditCtrl(kFiltered);
    EXPECT_TRUE(Raised<CUserException>([&] { DDV_NotEmpty(&saving, ""); }));
    EXPECT_EQ(saving.m_hWndLastControl, filtered.m_hWnd);
    EXPECT_TRUE(Raised<CInvalidArgException>([&] { saving.PrepareCtrl(77); }));
}

TEST_F(ValidatorsTest, TransfersTrimAndFilter) {
    CDataExchange filling(&dialog, 0), saving(&dialog, 1);
    CString text = "  a b\t";
    DDX_TrimText(&filling, kEdit, text);
    EXPECT_EQ(text, "a b");
    edit.SetWindowText(" typed ");
    DDX_TrimText(&saving, kEdit, text);
    EXPECT_EQ(text, "typed");
    CComboBox box;
    box.Attach(combo.Detach());
    box.AddString("Alpha");
    text = "alp";
    DDX_TrimCBString(&filling, kCombo, text);
    EXPECT_EQ(TextOf(kCombo), "Alpha");
    text = " other";
    DDX_TrimCBString(&filling, kCombo, text);
    DDX_TrimCBString(&saving, kCombo, text);
    EXPECT_EQ(text, "other");
    text = "a1b2";
    DDX_ExtendedText(&filling, kFiltered, text);
    EXPECT_EQ(TextOf(kFiltered) + text.AsStd(), "1212");
    text = "a1b2";
    DDX_ExtendedText(&filling, kEdit, text);
    EXPECT_EQ(TextOf(kEdit), "a1b2");
    CCodeEditCtrl code;
    code.Attach(edit.Detach());
    DDX_Text(&filling, code, text = "code");
    DDX_Text(&saving, code, text = "");
    EXPECT_EQ(text, "code");
}

TEST_F(ValidatorsTest, PreserveUndisplayedDigits) {
    struct Row {
        const char* typed;
        double value;
        bool fails = false;
    };
    for (const Row& row : {Row{"3.14", 3.14159}, Row{"3.140", 3.14}, Row{" 2.5 ", 2.5}, Row{"-1e3", -1000},
                           Row{".5", 0.5}, Row{"", 3.14159, true}, Row{"x", 3.14159, true}, Row{"1x", 3.14159, true},
                           Row{"inf", 3.14159, true}, Row{"nan", 3.14159, true}, Row{"0x10", 3.14159, true},
                           Row{"1e999", 3.14159, true}, Row{"1000000000000000000000000000000000", 1e31}}) {
        const RecordingMessageBox box;
        CDataExchange filling(&dialog, 0), saving(&dialog, 1);
        double value = 3.14159;
        DDX_Text_Display_Formatted(&filling, kEdit, value, "%.2f");
        EXPECT_EQ(TextOf(kEdit), "3.14");
        edit.SetWindowText(row.typed);
        const auto read = [&] { DDX_Text_Display_Formatted(&saving, kEdit, value, "%.2f"); };
        EXPECT_EQ(Raised<CUserException>(read) != nullptr, row.fails) << row.typed;
        EXPECT_EQ(value, row.value) << row.typed;
        EXPECT_EQ(box.shown.size(), row.fails ? 1u : 0u);
    }
    double large = 1e40;
    for (const BOOL saving : {0, 1}) {
        CDataExchange exchange(&dialog, saving);
        DDX_Text_Display_Formatted(&exchange, kEdit, large, "%.2f");
    }
    EXPECT_EQ(large, 1e40);
}

}  // namespace
