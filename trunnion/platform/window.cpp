#include "trunnion/platform/window.h"

#include <cstring>

int CWnd::GetWindowTextA(char *buffer, int size) const {
    if (size < 1) {
        return 0;
    }
    const std::size_t copied = windowText.copy(buffer, static_cast<std::size_t>(size) - 1);
    buffer[copied] = '\0';
    return static_cast<int>(copied);
}

void CWnd::SetWindowTextA(const char *text) {
    windowText = std::string(text != nullptr ? text : "");
}

void CWnd::GetClientRect(tagRECT *rect) const {
    *rect = client;
}

CWnd *CWnd::GetDlgItem(int control) const {
    const auto found = items.find(control);
    return found != items.end() ? found->second : nullptr;
}

void CWnd::SetClientSize(int width, int height) {
    client = {0, 0, width, height};
}

void CWnd::AddDlgItem(int control, CWnd *window) {
    items[control] = window;
}

void AfxSetWindowText(CWnd *control, const char *text) {
    char current[256] = {};
    const int length = control->GetWindowTextA(current, sizeof current);
    // A text that fills the buffer may go on behind it.
    const bool isWhole = length < static_cast<int>(sizeof current) - 1;
    if (!isWhole || std::strcmp(current, text) != 0) {
        control->SetWindowTextA(text);
    }
}

void CUserException::Delete() {
    // The one exception object is static.
}

CDataExchange::CDataExchange(CWnd *dialog, int saveAndValidate)
    : m_bSaveAndValidate(saveAndValidate), m_pDlgWnd(dialog) {}

CWnd *CDataExchange::PrepareEditCtrl(int control) {
    CWnd *found = m_pDlgWnd != nullptr ? m_pDlgWnd->GetDlgItem(control) : nullptr;
    if (found == nullptr) {
        Fail();
    }
    return found;
}

void CDataExchange::Fail() {
    static CUserException refused;
    throw &refused;
}
