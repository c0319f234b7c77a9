#pragma once

class QWidget;

// What the pages show, one source NAME.cpp for each function makeNAME(). The caller owns the widget
// that it gets, and with it all that belongs to the page.
namespace gallery {

QWidget* makeAboutBox();
QWidget* makeAlarmLabel();
QWidget* makeColorPicker();
QWidget* makeHistogram();
QWidget* makeImageFrame();
QWidget* makeIndicators();
QWidget* makeLatLonEditors();
QWidget* makeMultiPathSelectDialog();
QWidget* makeNotifierWidget();
QWidget* makeRulers();
QWidget* makeScalableTextWidget();
QWidget* makeSlidingGauges();
QWidget* makeSpFbUiWrapper();
QWidget* makeStandardPalettes();
QWidget* makeStatusWidgets();
QWidget* makeStripChart();
QWidget* makeWaterfallView();

} // namespace gallery
