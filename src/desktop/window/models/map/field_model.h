// A model's field on the map page, on the window's thread: which is shown, of what hour, what its colours
// mean. Fetching and drawing happen in a layer of its own thread, which is made when a field is first wanted.
// Owned by MapModel.
#pragma once

#include "desktop/imagery/field_layer.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"
#include "desktop/window/models/view_models.h"
#include "desktop/window/painting/map/map_layer.h"

#include <QObject>
#include <memory>
#include <optional>

namespace nimbara {

struct FieldView {
  std::string title;
  std::string time;    ///< of the hour that is shown; empty without one
  std::string note;    ///< that it is loading, or why there is none
  std::string credit;  ///< that it is a model's, and whose
  std::string unit;
  double hour = 0;
  double count = 0;
  std::string sentence;
  bool operator==(FieldView const&) const = default;
};

template <>
inline constexpr auto viewFields<FieldView> = FieldList{
    viewField("title", &FieldView::title),     viewField("time", &FieldView::time),
    viewField("note", &FieldView::note),       viewField("credit", &FieldView::credit),
    viewField("unit", &FieldView::unit),       viewField("hour", &FieldView::hour),
    viewField("hourCount", &FieldView::count), viewField("sentence", &FieldView::sentence),
};

struct FieldColourView {
  std::string colour;  ///< "#rrggbb"
  std::string amount;
  bool operator==(FieldColourView const&) const = default;
};

template <>
inline constexpr auto viewFields<FieldColourView> =
    FieldList{viewField("colour", &FieldColourView::colour), viewField("amount", &FieldColourView::amount)};

class FieldModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(nimbara::RecordModel* view READ view CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* colours READ colours CONSTANT)
  Q_PROPERTY(bool isShown READ isShown NOTIFY isShownChanged)
  Q_PROPERTY(bool isDark READ isDark WRITE setDark NOTIFY isDarkChanged)

 public:
  /// Without a service there is nobody to ask.
  FieldModel(InUse<ModelFieldService> service, QObject* parent);
  ~FieldModel() override;

  bool canAsk() const { return static_cast<bool>(service_); }
  /// A new language or moment.
  void show(ViewContext const& context);
  /// What the map shows and nobody moves any more, and which field of it; nothing while nobody looks.
  void look(std::optional<FieldKind> kind, MapView const& view);
  void take(FieldAnswer answer);

  RecordModel* view() { return view_; }
  RecordListModel* colours() { return colours_; }
  bool isShown() const { return kind_.has_value(); }
  bool isDark() const { return isDark_; }
  void setDark(bool isDark);
  /// Nothing is to come that a picture of the page should wait for.
  bool hasSettled() const { return !wish_ || (answer_ && answer_->wish == *wish_); }
  /// None or one.
  MapLayerPictures pictures() const;

  Q_INVOKABLE void choose(int hour);

 Q_SIGNALS:
  void isShownChanged();
  void isDarkChanged();
  void pictured();
  void settled();

 private:
  void want();
  void showAll();

  InUse<ModelFieldService> service_;
  RecordModel* view_;
  RecordListModel* colours_;
  std::optional<ViewContext> context_;
  std::optional<FieldKind> kind_;
  MapView looked_;
  bool isDark_ = false;
  std::optional<Instant> chosen_;  ///< none: always the present hour
  std::optional<FieldWish> wish_;
  std::optional<FieldAnswer> answer_;  ///< the last
  std::unique_ptr<FieldLayer> layer_;  ///< ends first
};

}  // namespace nimbara
