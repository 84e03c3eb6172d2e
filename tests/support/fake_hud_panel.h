#pragma once

#include "ports/hud_panel.h"

#include <string>
#include <vector>

namespace corvandi::testing {

/// Makes panels that draw nothing and record what is asked of them. The records stay when a panel goes.
class FakeHUDPanelFactory : public HUDPanelFactory {
public:
    struct Fade {
        double from;
        double alpha;
        MainQueue::Duration duration;
    };

    [[nodiscard]] std::unique_ptr<HUDPanel> create(HUDModel& model) override
    {
        models.push_back(&model);
        return std::make_unique<Panel>(*this);
    }

    /// What `mainScreenVisibleFrame` answers.
    std::optional<PanelRect> screen = PanelRect{0, 0, 1280, 800};

    /// The models that panels were made for.
    std::vector<const HUDModel*> models;
    /// The names of the operations that changed something, in order.
    std::vector<std::string> calls;
    std::optional<PanelRect> frame;
    double alpha = 1;
    std::vector<Fade> fades;
    bool isVisible = false;

private:
    class Panel : public HUDPanel {
    public:
        explicit Panel(FakeHUDPanelFactory& records)
            : records_(records)
        {
        }
        ~Panel() override { records_.isVisible = false; }
        [[nodiscard]] std::optional<PanelRect> mainScreenVisibleFrame() const override
        {
            return records_.screen;
        }
        void setFrame(const PanelRect& rect) override
        {
            records_.calls.emplace_back("setFrame");
            records_.frame = rect;
        }
        void setAlpha(double opacity) override
        {
            records_.calls.emplace_back("setAlpha");
            records_.alpha = opacity;
        }
        void orderFront() override
        {
            records_.calls.emplace_back("orderFront");
            records_.isVisible = true;
        }
        void fadeTo(double opacity, MainQueue::Duration duration) override
        {
            records_.calls.emplace_back("fadeTo");
            records_.fades.push_back({records_.alpha, opacity, duration});
            records_.alpha = opacity;
        }
        void orderOut() override
        {
            records_.calls.emplace_back("orderOut");
            records_.isVisible = false;
        }

    private:
        FakeHUDPanelFactory& records_;
    };
};

} // namespace corvandi::testing
