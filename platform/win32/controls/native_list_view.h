// Lists of many rows: a virtual list view that asks for the texts of the rows it shows. Kept apart from dragging
// (native_list_drag.h) because that has a state of its own.
#pragma once

#include <memory>
#include <vector>

#include "forms/list_view.h"
#include "platform/win32/controls/native_control.h"
#include "platform/win32/controls/native_file_drag.h"
#include "platform/win32/controls/native_list_drag.h"

namespace quenlox::win32 {

class NativeListView : public NativeControl {
  public:
    NativeListView(ControlHost& host, ListView& view);
    ~NativeListView() override;
    void changed(Property property) override;
    Size wish() const override;
    std::optional<LRESULT> notify(NMHDR& header) override;
    bool takesKey(WPARAM key) const override;
    bool pressed() override;
    bool contextMenu(POINT screen) override;
    void fontChanged() override;
    void paletteChanged() override;

  protected:
    CaptionUse captionUse() const override { return CaptionUse::Name; }
    std::optional<LRESULT> intercept(UINT message, WPARAM w, LPARAM l) override;

  private:
    void showColumns();
    void showSortMark(std::size_t column);
    void fitColumn();
    void makeIcons();
    void paintEmptyText() const;
    void showRowCount();
    void showSelection();
    void showFocus();
    void redrawRows();
    bool selectsMany(UINT message, WPARAM w) const;
    LRESULT withoutDrawing(UINT message, WPARAM w, LPARAM l);
    std::optional<LRESULT> headerMenu(HWND asked, POINT at);  // nothing where none was asked for over the headings
    void takeItemChange(const NMLISTVIEW& change);
    void takeRange(const NMLVODSTATECHANGE& change);
    void takeColumnWidth(const NMHEADERW& change);
    void giveText(NMLVDISPINFOW& info) const;
    void beginDrag();
    void dragOut();
    void takeDrag(const NativeListDrag::Target& target);
    void takeFiles();
    LRESULT findRow(const NMLVFINDITEMW& search) const;
    LRESULT customDraw(NMLVCUSTOMDRAW& draw);
    void colorRow(NMLVCUSTOMDRAW& draw, int row) const;
    std::optional<LRESULT> drawHeader(const NMCUSTOMDRAW& draw) const;
    bool marked(int row) const { return view_.marked && view_.marked(row); }
    void paintNote(HDC dc, int row) const;
    void showTip(LPARAM at);
    void makeBoldFont();
    int scaled(int pixelsAt96) const;

    ListView& view_;
    std::vector<ListView::Column> columns_;  // as the window has them
    std::vector<bool> shown_;                // which rows of the window are selected
    bool takingRow_ = false;                 // the window has told the change of one row
    int selectionChanges_ = 0;
    int tipRow_ = -1;  // of the tip that is shown, or would be
    OwnedFont bold_;
    HIMAGELIST icons_ = nullptr;
    InsertionMark mark_;
    NativeListDrag drag_{mark_};
    std::unique_ptr<FileDropTarget> dropTarget_;
};

}  // namespace quenlox::win32
