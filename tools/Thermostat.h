#pragma once

// A heater that keeps a mirror a little warmer than the air: on below the lower bound, off above the upper
// one.
class Thermostat {
public:
    Thermostat(double lower, double upper, double heating, double cooling)
        : lower_(lower), upper_(upper), heating_(heating), cooling_(cooling), excess_(lower) {}

    // `loss`: 1 in still air, more in wind.
    void advanceSecond(double loss) {
        excess_ += (isOn_ ? heating_ : 0) - cooling_ * loss * excess_;
        if (excess_ < lower_) {
            isOn_ = true;
        } else if (excess_ > upper_) {
            isOn_ = false;
        }
    }

    bool isOn() const { return isOn_; }

private:
    double lower_;   // K above the air
    double upper_;   // K above the air
    double heating_; // K/s
    double cooling_; // 1/s
    double excess_;
    bool isOn_ = false;
};
