#include "simulate/Replication.h"

#include "Fingerprint.h"
#include "HandMadeProgram.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vardo {
namespace {

using test::HandMadeProgram;
using test::QueueModel;

const auto kGoesOn = [](std::uint64_t) { return true; };

double MeanOf(const World& world, std::uint32_t level) { return world.levels[level].AreaUntil(world.now) / world.now; }

TEST(Replication, OneServerWithConstantTimes) {
  // Somebody comes every 2 seconds, from 0 on, and is served for 3.
  const HandMadeProgram model({.between = 2, .service = 3, .maxArrivals = 4, .isConstant = true});
  Replication replication(model.program());
  EXPECT_EQ(replication.Run({}, {}, kGoesOn), EndReason::NothingLeft);
  World& world = replication.world();
  EXPECT_EQ(world.now, 12);
  EXPECT_EQ(replication.events(), 4u + 4u + 3u);
  EXPECT_EQ(world.tallies[model.queueWait].n, 4u);
  EXPECT_EQ(world.tallies[model.queueWait].mean, (0 + 1 + 2 + 3) / 4.);
  EXPECT_EQ(world.tallies[model.queueWait].max, 3);
  EXPECT_EQ(world.tallies[model.total].mean, (3 + 4 + 5 + 6) / 4.);
  EXPECT_EQ(world.levels[model.busy].AreaUntil(12), 12);
  EXPECT_EQ(world.levels[model.queueLength].AreaUntil(12), 6);
  EXPECT_EQ(world.levels[model.inSystem].AreaUntil(12), 18);
}

TEST(Replication, EventsAtTheEndItselfDoNotHappen) {
  const HandMadeProgram model({.between = 2, .service = 1, .isConstant = true});
  Replication replication(model.program());
  EXPECT_EQ(replication.Run({}, {.length = 6}, kGoesOn), EndReason::Length);
  EXPECT_EQ(replication.world().tallies[model.total].n, 3u);
  EXPECT_EQ(replication.world().levels[model.inSystem].value, 0);
}

TEST(Replication, AServerDoneJustAsTheNextComesIsFree) {
  const HandMadeProgram model({.between = 2, .service = 2, .isConstant = true});
  Replication replication(model.program());
  replication.Run({}, {.length = 100}, kGoesOn);
  EXPECT_EQ(replication.world().tallies[model.queueWait].max, 0);
  EXPECT_EQ(replication.world().levels[model.queueLength].max, 0);
}

TEST(Replication, MilestonesComeBeforeOtherEventsOfTheirInstant) {
  const HandMadeProgram model({.between = 2, .service = 1, .isConstant = true});
  Replication replication(model.program());
  std::vector<double> there;
  for (const double time : {2., 3., 6.})
    replication.milestones.push_back({time, [&] { there.push_back(replication.world().levels[model.inSystem].value); }});
  replication.Run({}, {.length = 6}, kGoesOn);
  EXPECT_EQ(there, (std::vector<double>{0, 1}));
}

TEST(Replication, TheClassicalQueueComesNearItsFormulas) {
  const HandMadeProgram model({.between = 1 / .75, .service = 1});
  Replication replication(model.program());
  replication.Run({}, {.length = test::Fewer(1000000)}, kGoesOn);
  if (test::kIsShortened) return;
  const World& world = replication.world();
  EXPECT_NEAR(MeanOf(world, model.busy), .75, .01);
  EXPECT_NEAR(MeanOf(world, model.queueLength), 2.25, .1);
  EXPECT_NEAR(world.tallies[model.queueWait].mean, 3, .12);
  EXPECT_NEAR(MeanOf(world, model.inSystem), 3, .12);
}

TEST(Replication, TheSameSeedGivesTheSameBitsAgainAndAgain) {
  const HandMadeProgram model({.between = 1 / .75, .service = 1, .hasCosts = true});
  const auto run = [&](Replication& replication, std::uint64_t number) {
    replication.Run({.replication = number}, {.length = 2000}, kGoesOn);
    test::Fingerprint fingerprint;
    for (const Tally& tally : replication.world().tallies) fingerprint.Add(tally.mean), fingerprint.Add(tally.squares);
    for (const Level& level : replication.world().levels) fingerprint.Add(level.AreaUntil(replication.world().now));
    return fingerprint.hash();
  };
  Replication one(model.program()), other(model.program());
  const std::uint64_t first = run(one, 1);
  EXPECT_EQ(first, 10454079246401174358u);
  EXPECT_NE(run(one, 2), first);
  EXPECT_EQ(run(other, 2), run(one, 2));
  EXPECT_EQ(run(other, 1), first);
}

TEST(Replication, AnEntityWithTenAttributesTakesAtMostTwoHundredBytes) {
  const HandMadeProgram model({.attributes = 10});
  Entities entities;
  entities.Clear(model.program());
  EXPECT_LE(entities.BytesEach() + sizeof(EventKey), 200u);
}

std::string FailureOf(const Program& program, const ReplicationLimits& limits) {
  Replication replication(program);
  try {
    replication.Run({.replication = 3}, limits, kGoesOn);
  } catch (const RunError& error) {
    return error.what();
  }
  return "";
}

TEST(Replication, EntitiesThatPileUpEndTheRunWithTheFullestQueue) {
  const HandMadeProgram model({.between = 1, .service = 100, .isConstant = true});
  EXPECT_EQ(FailureOf(model.program(), {.mostEntities = 50}),
            "Replication 3 at 50 s: more than 50 entities are in the model at once: \"Serve.Queue\" holds 49.");
}

TEST(Replication, ArrivalsWithoutTimeBetweenThemEndTheRun) {
  const HandMadeProgram model({.between = 0, .service = 100, .isConstant = true});
  EXPECT_EQ(FailureOf(model.program(), {.mostSteps = 1000}).substr(0, 77),
            "Replication 3 at 0 s: more than 1000 steps without any time passing: Process ");
}

TEST(Replication, ModelsThatNeverEndSaySo) {
  const HandMadeProgram model({.between = 1, .service = .5, .entities = 0, .isConstant = true});
  Replication replication(model.program());
  int asked = 0;
  EXPECT_EQ(replication.Run({}, {}, [&](std::uint64_t) { return ++asked < 3; }), EndReason::Stopped);
  EXPECT_EQ(asked, 3);
}

}  // namespace
}  // namespace vardo
