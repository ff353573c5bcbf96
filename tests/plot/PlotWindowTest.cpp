#include "plot/PlotWindowTest.h"

void PlotWindowTest::initTestCase() {
    data_.emplace();
    data_->add(shortBlock());
}

void PlotWindowTest::init() {
    window_.emplace(*data_, "GA:DATA:X");
}

void PlotWindowTest::cleanup() {
    window_.reset();
}
