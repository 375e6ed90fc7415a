#include "application/services.h"

namespace {

// Holds the controller's state and shows nothing: the controller of a program without a
// status strip (the maker unset).
class PlaceholderTuneController : public TuneController
{
public:
    bool yourControllerIsVissible() const override { return visible_; }
    void setYourControllerIsVissible(bool visible) override { visible_ = visible; }
    int yourControllerLastAction() const override { return lastAction_; }
    void setYourControllerLastAction(int action) override { lastAction_ = action; }
    bool yourLyricsWindowWasHiddenByController() const override { return lyricsHidden_; }
    void setYourLyricsWindowWasHiddenByController(bool hidden) override { lyricsHidden_ = hidden; }
    bool checkIfTheControllerShouldBeHide(bool) override { return false; }
    void showControlls(bool, bool) override { visible_ = true; }
    void hideControlls(bool, bool) override { visible_ = false; }
    void switchPlayButtonStatusTo(int) override {}
    void updateControllerRating() override {}
    void emptyControllerRating() override {}
    void fadeTuneControllerOut() override {}
    QPoint currentPosition() const override { return {}; }

private:
    bool visible_ = true;
    int lastAction_ = 0;
    bool lyricsHidden_ = false;
};

} // namespace

std::shared_ptr<TuneController> ProgramServiceFactory::createTuneController()
{
    if (tuneControllerMaker)
        return tuneControllerMaker();
    return std::make_shared<PlaceholderTuneController>();
}

std::shared_ptr<FunctionPoolWindowController> ProgramServiceFactory::createFunctionPoolWindowController()
{
    return functionPoolWindowMaker ? functionPoolWindowMaker(functionPoolWindowHooks) : nullptr;
}
