#include "examples/deploy_demo/timeline_moments.h"

#include "examples/deploy_demo/text.h"

#include <algorithm>

namespace zorvel {
namespace demo {

namespace {

std::string killText(const Member& dead, const Death& death)
{
    const std::string release = " release " + std::to_string(death.release);
    const std::string deed = dead.role == Role::writer ? " half way through" + release : " reading" + release;
    return dead.name + " killed" + (death.inside ? deed : "");
}

std::string heirText(const Member& heir, const Member& dead, const Death& death)
{
    return heir.name + " removes " + dead.name + "'s stale lock file, " + seconds(death.clearedAt - death.time, 1) +
           " later";
}

std::vector<Moment> collect(const History& history, const TimeScale& scale)
{
    std::vector<Moment> moments;
    for (const Death& death : history.deaths()) {
        const Member& dead = history.members()[death.process];
        moments.push_back({scale.at(death.time), "kill", killText(dead, death)});
        if (death.cleared)
            moments.push_back(
                {scale.at(death.clearedAt), "heir", heirText(history.members()[death.heir], dead, death)});
    }
    std::stable_sort(moments.begin(), moments.end(),
                     [](const Moment& left, const Moment& right) { return left.x < right.x; });
    return moments;
}

/// A text that finds no room on the right goes left, and so do the earlier ones
/// that its line would run through.
void chooseSides(std::vector<Moment>& moments, double right)
{
    double limit = right;
    for (auto moment = moments.rbegin(); moment != moments.rend(); ++moment) {
        moment->left = moment->x + widthOf(moment->text) > limit;
        if (moment->left)
            limit = moment->x;
    }
}

/// Texts on the left stand above the lines of all earlier moments, the latest
/// one on top; below them those on the right, above the lines of all later
/// ones.
void chooseRows(std::vector<Moment>& moments)
{
    int row = 0;
    for (auto moment = moments.rbegin(); moment != moments.rend(); ++moment)
        if (moment->left)
            moment->row = row++;
    for (Moment& moment : moments)
        if (!moment.left)
            moment.row = row++;
}

}  // namespace

std::vector<Moment> momentsOf(const History& history, const TimeScale& scale, double right)
{
    std::vector<Moment> moments = collect(history, scale);
    chooseSides(moments, right);
    chooseRows(moments);
    return moments;
}

double widthOf(const std::string& text)
{
    const double letterWidth = 6.5;
    return letterWidth * static_cast<double>(text.size());
}

}  // namespace demo
}  // namespace zorvel
