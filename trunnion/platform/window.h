// Windows, dialogs and the exchange of their fields, reduced to what the library asks of the
// application framework. A host puts its own windows behind these classes by overriding; one that
// has none fills them.
#pragma once

#include <map>
#include <string>

#include "trunnion/export.h"
#include "trunnion/platform/point.h"

// A window or a control: a text, a client area, and for a dialog its controls.
class TRUNNION_API CWnd {
public:
    // A window without text, area and controls.
    CWnd() = default;
    CWnd(const CWnd &) = delete;
    CWnd &operator=(const CWnd &) = delete;
    virtual ~CWnd() = default;

    // Copies at most `size` - 1 characters of the text and terminates; nothing for a size below 1.
    // Returns how many were copied.
    virtual int GetWindowTextA(char *buffer, int size) const;
    // Replaces the text; null gives an empty one.
    virtual void SetWindowTextA(const char *text);
    // The area inside the frame in pixels; left and top are 0.
    virtual void GetClientRect(tagRECT *rect) const;
    // The control with this number, or null. It is not the dialog's to delete.
    virtual CWnd *GetDlgItem(int control) const;

    // Fill what the functions above answer with.
    void SetClientSize(int width, int height);
    void AddDlgItem(int control, CWnd *window);

private:
    std::string windowText;
    tagRECT client{};
    std::map<int, CWnd *> items;
};

// Sets the text of a control, unless it has that text already: so an edit field keeps its cursor
// and reports no change.
TRUNNION_API void AfxSetWindowText(CWnd *control, const char *text);

// Raised, as a pointer, when a field of a dialog is refused. Whoever catches it calls Delete.
class TRUNNION_API CUserException {
public:
    virtual ~CUserException() = default;
    // Gives the exception back.
    void Delete();
};

// One run over the fields of a dialog.
class TRUNNION_API CDataExchange {
public:
    // `saveAndValidate` is told at the member.
    CDataExchange(CWnd *dialog, int saveAndValidate);
    virtual ~CDataExchange() = default;

    // The edit control with this number. Calls Fail if the dialog has none, and gives null if that
    // returns.
    virtual CWnd *PrepareEditCtrl(int control);
    // Ends the exchange by throwing a CUserException *.
    virtual void Fail();

    // Not 0: from the fields to the values. 0: from the values to the fields.
    int m_bSaveAndValidate;
    // The dialog; it stays the caller's.
    CWnd *m_pDlgWnd;
};
