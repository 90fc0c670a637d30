#include "platform/linux/desktop_services.h"
#include "platform/secret_store.h"
#include "support/paths.h"
#include "support/session/mock_secret_service.h"
#include "support/session/silent_bus.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::MockSecretService;
using testing::ElementsAre;
using testing::IsEmpty;

struct SecretServiceTest : testing::Test {
  std::unique_ptr<SecretStore> store() { return desktopSecretStore({test::kProgram, "", bus_.address()}); }

  test::PrivateBus bus_;
};

TEST_F(SecretServiceTest, KeepsOneItemThatTheUserCanTellApart) {
  MockSecretService keyring(bus_);
  auto const store = this->store();
  EXPECT_EQ(store->find("one").error(), SecretFault::missing);
  ASSERT_TRUE(store->keep("one", "A label", "r1"));
  ASSERT_TRUE(store->keep("one", "A label", "r2"));
  EXPECT_EQ(store->find("one"), "r2");
  EXPECT_THAT(keyring.items(), ElementsAre("A label|one|r2"));
  EXPECT_EQ(store->find("other").error(), SecretFault::missing);
  EXPECT_TRUE(store->forget("one"));
  EXPECT_THAT(keyring.items(), IsEmpty());
}

TEST_F(SecretServiceTest, NeverAsksTheUserToOpenIt) {
  MockSecretService keyring(bus_);
  auto const store = this->store();
  ASSERT_TRUE(store->keep("one", "", "r1"));
  keyring.lock(true);
  EXPECT_EQ(store->keep("one", "", "r2").error(), SecretFault::locked);
  EXPECT_EQ(store->find("one").error(), SecretFault::locked);
  EXPECT_EQ(store->forget("one").error(), SecretFault::locked);
  keyring.lock(false);
  EXPECT_EQ(store->find("one"), "r1");
  EXPECT_EQ(keyring.prompts(), 0);
}

struct FaultRow {
  char const* name;
  test::KeyringScript script;
  SecretFault fault;
};

TEST_F(SecretServiceTest, SaysWhyASecretIsNotKept) {
  for (FaultRow const& row :
       {FaultRow{"no collection", {.hasCollection = false}, SecretFault::absent},
        {"asks the user", {.asksUser = true}, SecretFault::locked},
        {"locked meanwhile", {.createError = "org.freedesktop.Secret.Error.IsLocked"}, SecretFault::locked},
        {"out of order", {.createError = "org.freedesktop.DBus.Error.Failed"}, SecretFault::failed}}) {
    MockSecretService const keyring(bus_, row.script);
    EXPECT_EQ(store()->keep("one", "", "r1").error(), row.fault) << row.name;
  }
}

TEST_F(SecretServiceTest, IsAbsentWithoutServiceBusOrModule) {
  test::SilentBus const silent;
  for (auto const& store : {this->store(), desktopSecretStore({test::kProgram, "", "unix:path=/nowhere"}),
                            desktopSecretStore({"/nowhere/nimbara", "", bus_.address()}),
                            desktopSecretStore({test::kProgram, "", silent.address()})}) {
    EXPECT_EQ(store->keep("one", "", "r1").error(), SecretFault::absent);
    EXPECT_EQ(store->find("one").error(), SecretFault::absent);
    EXPECT_EQ(store->forget("one").error(), SecretFault::absent);
  }
}

}  // namespace
}  // namespace nimbara
