// Every rule with a drawing that breaks it and one that nearly does.
#include "ModelDrawing.h"
#include "TestPlatform.h"
#include "check/Check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace vardo {
namespace {

struct RuleCase {
  const char *rule, *broken, *message, *nearly;
};

constexpr RuleCase kStructure[] = {
    {"structure/no-create", R"(
       Process Work | ProcessMin=.1
       Dispose Go
       Work -> Go)",
     "Nothing ever arrives: the drawing has no Create module that leads anywhere.", R"(
       Create Come
       Dispose Go
       Come -> Go)"},
    {"structure/dead-end", R"(
       Create Come
       Process Work
       Come -> Work)",
     "Process \"Work\" leads nowhere: connect its exit to the next module or to a Dispose.", R"(
       Create Come
       Process Work
       Dispose Go
       Process Away | ProcessMin=.1
       Come -> Work -> Go)"},
    {"structure/true-exit-open", R"(
       Create Come
       Decide Ask
       Dispose Go
       Come -> Ask -false-> Go)",
     "Decide \"Ask\" has no connector at its True exit.", R"(
       Create Come
       Decide Ask
       Dispose Go
       Come -> Ask -false-> Go
       Ask:0 -> Go)"},
    {"structure/false-exit-open", R"(
       Create Come
       Decide Ask
       Dispose Go
       Come -> Ask -true-> Go)",
     "Decide \"Ask\" has no connector at its False exit.", R"(
       Create Come
       Decide Ask
       Dispose Go
       Come -> Ask -true-> Go
       Ask:0 -false-> Go)"},
    {"structure/duplicate-exit-open", R"(
       Create Come
       Separate Copy
       Dispose Go
       Come -> Copy -original-> Go)",
     "Separate \"Copy\" makes duplicates, but no Duplicate Connector takes them on.", R"(
       Create Come
       Separate Copy | SeparateType=Split
       Dispose Go
       Come -> Copy -original-> Go)"},
    {"structure/exit-used-twice", R"(
       Create Come
       Process Work
       Process Rest
       Come -> Work
       Come -> Rest)",
     "Create \"Come\" has 2 connectors at one exit; an entity can take only one, a Decide can choose.", R"(
       Create Come
       Create Come too
       Dispose Go
       Come -> Go
       Come too -> Go)"},
    {"structure/unreachable", R"(
       Create Come
       Dispose Go
       Process Work
       Dispose Leave
       Come -> Go
       Work -> Leave)",
     "No entity ever reaches Process \"Work\".", R"(
       Create Come
       Dispose Go
       Process Process 1
       Entity Entity 1
       Come -> Go)"},
    {"structure/not-part", R"(
       Create Come
       Dispose Go
       Record Record 1
       Come -> Go)",
     "Record \"Record 1\" is not connected yet and takes no part.", R"(
       Create Come
       Dispose Go
       Record Record 1 | RecordValue=2
       Come -> Go)"},
    {"structure/no-dispose", R"(
       Create Come
       Process Work
       Process Rest
       Come -> Work -> Rest -> Work)",
     "Entities from Create \"Come\" never leave.", R"(
       Create Come
       Process Work
       Decide Ask
       Dispose Go
       Come -> Work -> Ask -true-> Work
       Ask -false-> Go)"},
    {"structure/create-entered", R"(
       Create Come
       Process Work
       Come -> Work -> Come:1)",
     "Connector \"Dynamic connector.4\" enters Create \"Come\", where entities only begin.", R"(
       Create Come
       Process Work
       Come -> Work -> Work)"},
    {"structure/dispose-left", R"(
       Create Come
       Dispose Go
       Process Work
       Come -> Go -> Work)",
     "Connector \"Dynamic connector.5\" leaves Dispose \"Go\", where entities end.", R"(
       Create Come
       Dispose Go
       Process Work
       Come -> Go
       Come -> Work)"},
    {"structure/data-module-connected", R"(
       Process Work
       Resource Machine
       Work -> Machine:0)",
     "Resource \"Machine\" is no station on the way; connector \"Dynamic connector\" has no effect.", R"(
       Process Work
       Resource Machine
       Work -> Work)"},
    {"structure/loose-end", R"(
       Create Come
       Come ->)",
     "Connector \"Dynamic connector\" ends nowhere.", R"(
       Process Part | ProcessType=Submodel | VardoSubPage=Sub
       page Sub of Page-1
       Process Work
       Work ->)"},
    {"structure/foreign-shape", R"(
       Create Come
       Process Box
       Come -> Box
       cell Box User.ClassName="Rectangle")",
     "Connector \"Dynamic connector\" leads to \"Box\", which is no module.", R"(
       Create Come
       Process Box
       Come -> Box)"},
    {"structure/wrong-exit", R"(
       Create Come
       Decide Ask
       Dispose Go
       Come -> Ask
       Ask:3 -true-> Go)",
     "Connector \"True Connector\" is a True Connector, but leaves Decide \"Ask\" by its False exit.", R"(
       Create Come
       Decide Ask
       Dispose Go
       Come -> Ask
       Ask:1 -true-> Go
       Ask:0 -false-> Go)"},
    {"structure/entered-at-exit", R"(
       Create Come
       Process Work
       Come -> Work:1)",
     "Connector \"Dynamic connector\" enters Process \"Work\" at its exit; it counts as entering.", R"(
       Create Come
       Dispose Go
       Come -> Go:1)"},
    {"structure/loop-forever", R"(
       Create Come
       Assign Mark
       Record Note
       Come -> Mark -> Note -> Mark)",
     "Entities go round Assign \"Mark\", Record \"Note\" for ever without time passing.", R"(
       Create Come
       Assign Mark
       Process Work | ProcessDelayType=Constant | ProcessValue=.001
       Come -> Mark -> Work -> Mark)"},
    {"structure/loop-without-delay", R"(
       Create Come
       Assign Mark
       Decide Ask | DecideType=If | DecideIf=Expression | DecideValue=J > 3
       Dispose Go
       Come -> Mark -> Ask -true-> Go
       Ask -false-> Mark)",
     "Time stands still between Assign \"Mark\" and Decide \"Ask\" until the condition changes.", R"(
       Create Come
       Assign Mark
       Decide Ask
       Dispose Go
       Come -> Mark -> Ask -true-> Go
       Ask -false-> Mark)"},
};

// A submodel that is as it should be.
#define SUBMODEL                                             \
  "Create Come\n"                                            \
  "Process Part | ProcessType=Submodel | VardoSubPage=Sub\n" \
  "Dispose Go\n"                                             \
  "Come -> Part -> Go\n"                                     \
  "page Sub of Page-1\n"

constexpr RuleCase kSubmodel[] = {
    {"submodel/not-drawn", R"(
       Create Come
       Process Part | ProcessType=Submodel
       Dispose Go
       Come -> Part -> Go)",
     "Process \"Part\" is a submodel without a page yet: choose Edit Submodel.", R"(
       Create Come
       Process Part | ProcessType=Submodel
       Dispose Go
       Come -> Go
       Part -> Go)"},
    {"submodel/page-missing", R"(
       Process Part | ProcessType=Submodel | VardoSubPage=Sub
       Part -> Part)",
     "Process \"Part\": its page \"Sub\" is no longer in the drawing.", SUBMODEL "Process Work\n-> Work ->"},
    {"submodel/shared-page", SUBMODEL R"(
       Process Work
       -> Work ->
       page Other
       Process Again | ProcessType=Submodel | VardoSubPage=Sub)",
     "Process \"Again\" and Process \"Part\" share the page \"Sub\".", SUBMODEL "Process Work\n-> Work ->"},
    {"submodel/contains-itself", R"(
       Process Outer | ProcessType=Submodel | VardoSubPage=A
       page A of B
       Process Inner | ProcessType=Submodel | VardoSubPage=B
       -> Inner ->
       page B of A
       Process Again | ProcessType=Submodel | VardoSubPage=B
       -> Again ->)",
     "Page \"B\" contains itself through Process \"Again\".", R"(
       Process Outer | ProcessType=Submodel | VardoSubPage=A
       page A of Page-1
       Process Inner | ProcessType=Submodel | VardoSubPage=B
       -> Inner ->
       page B of A
       Process Work
       -> Work ->)"},
    {"submodel/no-entry", SUBMODEL R"(
       Process Work
       Process Rest
       Work -> Rest -> Work)",
     "Entities that enter Process \"Part\" find no beginning on page \"Sub\".", SUBMODEL R"(
       Process Work
       Process Rest
       Work -> Rest -> Work
       -> Work)"},
    {"submodel/several-entries", SUBMODEL R"(
       Process Work | ProcessMin=.1
       Process Rest | ProcessMin=.1)",
     "Page \"Sub\": entities could begin at Process \"Work\" or at Process \"Rest\"; draw a connector with a loose begin to the "
     "right "
     "one.",
     SUBMODEL R"(
       Process Work | ProcessMin=.1
       Process Rest | ProcessMin=.1
       -> Rest)"},
    {"submodel/no-way-out", SUBMODEL R"(
       Process Work
       Process Rest
       -> Work -> Rest -> Work)",
     "Entities that enter Process \"Part\" never leave its page.", SUBMODEL R"(
       Process Work
       Decide Ask
       -> Work -> Ask -true-> Work)"},
    {"submodel/exit-not-used", SUBMODEL R"(
       Process Work
       Dispose Leave
       -> Work -> Leave)",
     "Nothing comes out of Process \"Part\": all entities leave on its page.", SUBMODEL R"(
       Process Work
       Decide Ask
       Dispose Leave
       -> Work -> Ask -true-> Leave)"},
    {"submodel/half-open-decide", SUBMODEL R"(
       Decide Ask
       Dispose Leave
       -> Ask -false-> Leave)",
     "The open True exit of Decide \"Ask\" leaves the submodel.", SUBMODEL R"(
       Decide Ask
       Dispose Leave
       -> Ask -false-> Leave
       Ask -true->)"},
    {"submodel/orphan-page", "page Sub of Page-1", "No Process leads to page \"Sub\".", "page Sub"},
    {"submodel/parent-differs", R"(
       Process Part | ProcessType=Submodel | VardoSubPage=Sub
       page Sub of Elsewhere
       Process Work
       -> Work ->)",
     "Page \"Sub\" calls \"Elsewhere\" its parent, but Process \"Part\" is on \"Page-1\".", SUBMODEL "Process Work\n-> Work ->"},
    {"submodel/standard-with-page", R"(
       Process Part | VardoSubPage=Sub
       page Sub of Page-1
       Process Work)",
     "Process \"Part\" is Standard: what page \"Sub\" shows takes no part.", R"(
       Process Part | VardoSubPage=Sub
       page Sub of Page-1)"},
};

constexpr RuleCase kNames[] = {
    {"names/duplicate", R"(
       Process Weld
       Process weld  | ProcessMin=.1)",
     "Process \"Weld\" and Process \"weld\" have the same name.", R"(
       Process Weld
       Process Welt)"},
    {"names/empty", "Process  | ProcessMin=.1", "A Process on page \"Page-1\" has no name.",
     "Process Work | ProcessMin=.1 | ProcessName="},
    {"names/text-differs", R"(
       Process Work | ProcessName=Rest | ProcessMin=.1)",
     "Process \"Rest\" shows \"Work\".", "Process Work | ProcessMin=.1"},
    {"names/list-separator", "Process Work | ProcessType=Standard;Submodel",
     "Process \"Work\", Type: \"Standard;Submodel\" holds a \";\", which separates the items of lists.",
     "Schedule Shift | Schedule_DCount=2 | Schedule_DurationsValue=1;2"},
    {"names/unreadable", "Process Cut+Weld | ProcessMin=.1",
     "Process \"Cut+Weld\": write [Cut+Weld] where expressions mean \"Cut+Weld\".", "Process Cut and #1 Weld? | ProcessMin=.1"},
    {"names/unknown", R"(
       Process Weld | ProcessDelayType=Expression | ProcessExpression=Length(Wled.Queue))",
     "Process \"Weld\", Expression: nothing is called \"Wled.Queue\"; did you mean \"Weld.Queue\"?", R"(
       Process Weld | ProcessDelayType=Expression | ProcessExpression=Length(weld.queue))"},
    {"names/ambiguous", R"(
       Create Come | CreateEntityType=Order
       Process Work | ProcessDelayType=Expression | ProcessExpression=Order
       Assign Mark | AssignCount=1 | AssignVariableName=Order
       Come -> Work)",
     "Process \"Work\", Expression: \"Order\" is a variable and an entity type; the variable is meant.", R"(
       Create Come | CreateEntityType=Order
       Process Work | ProcessDelayType=Expression | ProcessExpression=Order
       Come -> Work)"},
    {"names/hides-function", "Variable Length | VariableRows=3", "The variable \"Length\" hides the function of that name.",
     "Variable Length"},
    {"names/entity-type-undefined", R"(
       Create Come | CreateEntityType=Order)",
     "Entity type \"Order\" has no module: it costs nothing and has the usual picture.", R"(
       Create Come | CreateEntityType=Order
       Entity order)"},
    {"names/entity-type-unused", "Entity Order", "Entity \"Order\" is never used.", R"(
       Create Come | CreateEntityType=Order
       Entity Order)"},
    {"names/resource-undefined", "Process Work | ProcessAction=SDR | Process_RCount=1 | Process_RResourceName=Anna",
     "Resource \"Anna\" has no module: capacity 1.", R"(
       Process Work | ProcessAction=SDR | Process_RCount=1 | Process_RResourceName=Anna
       Resource Anna)"},
    {"names/resource-unused", R"(
       Resource Anna
       Set Staff | SetM_Count=1 | SetResourceMembers=Anna)",
     "Resource \"Anna\" is never used.", R"(
       Resource Anna
       Set Staff | SetM_Count=1 | SetResourceMembers=Anna
       Process Work | ProcessAction=SDR | Process_RCount=1 | Process_RType=Set | Process_RSetName=Staff)"},
    {"names/queue-unused", "Queue Queue 1",
     "Queue \"Queue 1\" ranks nothing: queues are named after a Process or Batch, as in \"Weld.Queue\".", R"(
       Batch Box | BatchBatchSize=3
       Queue Box.Queue)"},
    {"names/schedule-undefined", "Create Come | CreateType=Schedule", "Create \"Come\": there is no schedule \"Schedule 1\".", R"(
       Create Come | CreateType=Schedule
       Schedule Schedule 1)"},
    {"names/schedule-unused", "Schedule Shift", "Schedule \"Shift\" is never used.", R"(
       Schedule Shift
       Resource Anna | ResourceType=Schedule | ResourceScheduleName=Shift)"},
    {"names/set-undefined", "Process Work | ProcessAction=SDR | Process_RCount=1 | Process_RType=Set",
     "Process \"Work\": there is no set \"Set 1\".", R"(
       Process Work | ProcessAction=SDR | Process_RCount=1 | Process_RType=Set
       Set Set 1)"},
    {"names/set-unused", "Set Staff", "Set \"Staff\" is never used.", R"(
       Set Staff
       Process Work | ProcessAction=SDR | Process_RCount=1 | Process_RType=Set | Process_RSetName=Staff)"},
    {"names/set-empty", R"(
       Set Staff
       Process Work | ProcessAction=SDR | Process_RCount=1 | Process_RType=Set | Process_RSetName=Staff)",
     "Process \"Work\": set \"Staff\" has no members.", "Set Staff"},
    {"names/set-wrong-type", R"(
       Set Counts | SetType=Counter | SetM_Count=1
       Process Work | ProcessAction=SDR | Process_RCount=1 | Process_RType=Set | Process_RSetName=Counts)",
     "Process \"Work\" wants a set of resources; \"Counts\" is a set of counters.", R"(
       Set Counts | SetType=Counter | SetM_Count=1
       Record Note | RecordInSet=Yes | RecordCounterSetName=Counts)"},
    {"names/set-member-undefined", "Set Staff | SetM_Count=1 | SetResourceMembers=Anna",
     "Set \"Staff\": resource \"Anna\" has no module.", R"(
       Set Staff | SetM_Count=1 | SetResourceMembers=Anna
       Resource Anna)"},
    {"names/set-member-twice", "Set Staff | SetM_Count=3 | SetResourceMembers=Anna;Ben;anna",
     "Set \"Staff\" lists \"anna\" twice.", "Set Staff | SetM_Count=2 | SetResourceMembers=Anna;Ben;Anna"},
    {"names/variable-undefined", "Decide Ask | DecideType=If | DecideIf=Variable",
     "Decide \"Ask\": there is no variable \"Variable 1\".", R"(
       Decide Ask | DecideType=If | DecideIf=Variable
       Assign Mark | AssignCount=1)"},
    {"names/variable-undeclared", "Assign Mark | AssignCount=1 | AssignVariableName=Total",
     "Variable \"Total\" has no module: it starts at 0 and is not reported.", R"(
       Assign Mark | AssignCount=1 | AssignVariableName=Total
       Variable Total)"},
    {"names/variable-unused", "Variable Total", "Variable \"Total\" is never used.", R"(
       Variable Total
       Process Work | ProcessMax=Total)"},
    {"names/attribute-never-assigned", R"(
       Process Work
       Queue Work.Queue | QueueType=LVF | QueueAttributeName=Due date)",
     "Queue \"Work.Queue\", Attribute Name: attribute \"Due date\" is never assigned and always 0.", R"(
       Process Work
       Queue Work.Queue | QueueType=LVF | QueueAttributeName=Due date
       Assign Mark | AssignCount=1 | AssignType=Attribute | AssignAttributeName=Due date)"},
    {"names/attribute-unused", "Assign Mark | AssignCount=1 | AssignType=Attribute | AssignAttributeName=Due date",
     "Attribute \"Due date\" is assigned at Assign \"Mark\" and never used.", R"(
       Assign Mark | AssignCount=1 | AssignType=Attribute | AssignAttributeName=Due date
       Process Work | ProcessDelayType=Expression | ProcessExpression=Due date)"},
};

constexpr RuleCase kFields[] = {
    {"field/expression", "Process Work | ProcessDelayType=Expression | ProcessExpression=TRIA(1,2,3",
     "Process \"Work\", Expression: expected \",\" or \")\" at character 11.", "Process Work | ProcessExpression=TRIA(1,2,3"},
    {"field/template", "Process Work | ProcessDelayType=Expression | ProcessExpression=EXPO (Mean)",
     "Process \"Work\", Expression: put a value in place of \"Mean\".", R"(
       Process Work | ProcessDelayType=Expression | ProcessExpression=EXPO (Mean)
       Variable Mean)"},
    {"field/unknown-function", "Process Work | ProcessDelayType=Expression | ProcessExpression=EXPON(3)",
     "Process \"Work\", Expression: there is no function \"EXPON\".", R"(
       Process Work | ProcessDelayType=Expression | ProcessExpression=EXPON(3)
       Variable Expon | VariableRows=3)"},
    {"field/arguments", "Process Work | ProcessDelayType=Expression | ProcessExpression=TRIA(1,2)",
     "Process \"Work\", Expression: TRIA wants 3 values, and perhaps a stream, not 2.",
     "Process Work | ProcessDelayType=Expression | ProcessExpression=TRIA(1,2,3,4)"},
    {"field/no-entity", "Create Come | CreateType=Expression | CreateExpression=EXPO(Entity.Type)",
     "Create \"Come\", Expression: there is no entity here whose \"Entity.Type\" could be taken.",
     "Process Work | ProcessDelayType=Expression | ProcessExpression=EXPO(Entity.Type)"},
    {"field/missing", "Process Work | ProcessMin=.1\nrow Work 243 6", "Process \"Work\" has no Allocation; \"VA\" is taken.",
     "Process Work | ProcessMin=.1\nrow Work 243 3"},
    {"field/empty", "Process Work | ProcessMin=  ", "Process \"Work\", Minimum is empty; \".5\" is taken.",
     "Record Note | RecordCounterName= | RecordValue=2"},
    {"field/unknown-choice", "Process Work | ProcessUnits=Weeks",
     "Process \"Work\", Units: \"Weeks\" is none of Seconds, Minutes, Quarterhours, Halfhours, Hours or Days.",
     "Process Work | ProcessUnits=quarterHOURS"},
    {"field/shortened-choice", "Batch Box | BatchRule=Any", "Batch \"Box\", Rule: \"Any\" is read as \"Any Entity\".",
     "Batch Box | BatchRule=any entity"},
    {"field/not-a-number", "Resource Anna | ResourcePerUse=5 $", "Resource \"Anna\", Per Use: \"5 $\" is no number.",
     "Resource Anna | ResourcePerUse=5.25"},
    {"field/decimal-comma", "Resource Anna | ResourcePerUse=1,5", "Resource \"Anna\", Per Use: \"1,5\" is read as 1.5.",
     "Resource Anna | ResourcePerUse=1.5"},
    {"field/hidden", "Process Work | ProcessExpression=((1",
     "Process \"Work\", Expression is not used now, but would keep its dialog from closing.",
     "Process Work | ProcessExpression=)1("},
    {"field/zero-interarrival", "Create Come | CreateType=Constant | CreateValue=0",
     "Create \"Come\": no time passes between arrivals, so they never end.",
     "Create Come | CreateType=Constant | CreateValue=0 | CreateMaxBatches=1"},
    {"field/negative-delay", "Process Work | ProcessDelayType=Constant | ProcessValue=-1",
     "Process \"Work\", Value: the delay is negative.", "Process Work | ProcessDelayType=Constant | ProcessValue=0"},
    {"field/maybe-negative", "Process Work | ProcessDelayType=Expression | ProcessExpression=NORM(1, .5)",
     "Process \"Work\": about 2.3 % of the delays are negative and count as 0.",
     "Process Work | ProcessDelayType=Normal | ProcessValue=1.5 | ProcessStdDev=.5"},
    {"field/distribution", "Process Work | ProcessDelayType=Expression | ProcessExpression=1 + TRIA(3,2,1)",
     "Process \"Work\", Expression: TRIA wants minimum <= mode <= maximum.",
     "Process Work | ProcessMin=1 | ProcessValue=1 | ProcessMax=1"},
    {"field/cumulative", "Process Work | ProcessDelayType=Expression | ProcessExpression=DISC(.3,1,.7,2)",
     "Process \"Work\", Expression: the probabilities are cumulative and end with 1.",
     "Process Work | ProcessDelayType=Expression | ProcessExpression=DISC(.3,1,1,2)"},
    {"field/percent", "Decide Ask | DecidePercentTrue=250", "Decide \"Ask\", Percent True: 250 is not between 0 and 100.",
     "Decide Ask | DecidePercentTrue=100"},
    {"field/percent-one-way", "Decide Ask | DecidePercentTrue=100", "All entities leave Decide \"Ask\" by its True exit.",
     "Decide Ask | DecidePercentTrue=99.9"},
    {"field/not-whole", "Batch Box | BatchBatchSize=2.5", "Batch \"Box\", Batch Size: 2.5 is rounded to 3.",
     "Batch Box | BatchBatchSize=3.0"},
    {"field/count-too-small", "Batch Box | BatchBatchSize=0", "Batch \"Box\", Batch Size: 0 is less than 1.",
     "Batch Box | BatchBatchSize=.5"},
    {"field/array", R"(
       Variable Stock | VariableRows=3
       Process Work | ProcessMax=Stock(5))",
     "Process \"Work\", Maximum: \"Stock\" has 3 rows.", R"(
       Variable Stock | VariableRows=3
       Process Work | ProcessMax=Stock(3))"},
    {"field/array-in-decide", R"(
       Variable Stock | VariableRows=3
       Decide Ask | DecideType=If | DecideIf=Variable | DecideVariableNamed=Stock)",
     "Decide \"Ask\": \"Stock\" has rows; use an expression, or Other.", R"(
       Variable Stock
       Decide Ask | DecideType=If | DecideIf=Variable | DecideVariableNamed=Stock)"},
    {"field/initial-values",
     "Variable Stock | VariableRows=2 | VariableColumns=3 | Variable_ICount=5 | VariableInitialValue=1;2;3;4;5",
     "Variable \"Stock\": 5 initial values for 6 elements.",
     "Variable Stock | VariableRows=2 | VariableColumns=3 | Variable_ICount=1"},
    {"field/read-only", "Assign Mark | AssignCount=1 | AssignType=Attribute | AssignAttributeName=Entity.CreateTime",
     "Assign \"Mark\": \"Entity.CreateTime\" cannot be assigned.",
     "Assign Mark | AssignCount=1 | AssignType=Attribute | AssignAttributeName=Entity.Station"},
    {"field/read-only", "Assign Mark | AssignCount=1 | AssignType=Other | AssignOther=Entity.CreateTime",
     "Assign \"Mark\", Others (row 1): \"Entity.CreateTime\" cannot be assigned.",
     "Assign Mark | AssignCount=1 | AssignType=Other | AssignOther=J"},
    {"field/constant-condition", "Decide Ask | DecideType=If | DecideIf=Expression | DecideValue=1 == 1",
     "Decide \"Ask\": the condition is always true.", "Decide Ask | DecideType=If | DecideIf=Expression | DecideValue=1 == J"},
    {"field/first-creation-unit", "Create Come | CreateUnits=Minutes | CreateFirstCreation=5",
     "Create \"Come\": First Creation is in hours.",
     "Create Come | CreateUnits=Minutes | CreateFirstCreation=5\ncell TheDoc User.VardoRunTimeUnit=\"minutes\""},
};

#define SEIZE "ProcessAction=SD | Process_RCount=1 | Process_RResourceName="
#define RELEASE "ProcessAction=DR | Process_RCount=1 | Process_RResourceName="
#define SERVE "ProcessAction=SDR | Process_RCount=1 | Process_RResourceName="

constexpr RuleCase kResources[] = {
    {"resource/never-released", "Process Take | " SEIZE "Anna", "Nobody gives back \"Anna\", which Process \"Take\" seizes.", R"(
       Process Take | )" SEIZE R"(Anna
       Process Give | ProcessAction=DR | Process_RCount=1 | Process_RType=Set | Process_RSetName=Staff
       Set Staff | SetM_Count=1 | SetResourceMembers=Anna)"},
    {"resource/may-leave-held", R"(
       Create Come
       Process Take | )" SEIZE R"(Anna
       Decide Ask
       Process Give | )" RELEASE R"(Anna
       Dispose Go
       Come -> Take -> Ask -true-> Give -> Go
       Ask -false-> Go)",
     "An entity can leave at Dispose \"Go\" with \"Anna\" from Process \"Take\".", R"(
       Create Come
       Process Take | )" SEIZE R"(Anna
       Decide Ask
       Process Give | )" RELEASE R"(Anna
       Dispose Go
       Come -> Ask -true-> Take -> Give -> Go
       Ask -false-> Go)"},
    {"resource/never-seized", "Process Give | " RELEASE "Anna", "Process \"Give\" gives back \"Anna\", which nobody seizes.", R"(
       Process Give | )" RELEASE R"(Anna
       Process Take | )" SEIZE "Anna"},
    {"resource/may-release-unheld", R"(
       Create Come
       Create Join
       Process Take | )" SEIZE R"(Anna
       Process Give | )" RELEASE R"(Anna
       Dispose Go
       Come -> Take -> Give -> Go
       Join -> Give)",
     "An entity can reach Process \"Give\" without holding \"Anna\".", R"(
       Create Come
       Create Join
       Process Take | )" SEIZE R"(Anna
       Process Give | )" RELEASE R"(Anna
       Dispose Go
       Come -> Take -> Give -> Go
       Join -> Take)"},
    {"resource/quantity-above-capacity", R"(
       Process Work | )" SERVE R"(Anna | Process_RQuantity=3
       Resource Anna | ResourceCapacity=2)",
     "Process \"Work\" wants 3 of \"Anna\"; there are never more than 2.", R"(
       Process Work | )" SERVE R"(Anna | Process_RQuantity=3
       Resource Anna | ResourceType=Schedule | ResourceScheduleName=Shift
       Schedule Shift | Schedule_DCount=2 | Schedule_DurationsValue=1;3 | Schedule_DurationsDuration=8;8)"},
    {"resource/no-capacity", R"(
       Process Work | )" SERVE R"(Anna
       Resource Anna | ResourceCapacity=0)",
     "\"Anna\" never has a unit: Process \"Work\" waits for ever.", R"(
       Process Work | )" SERVE R"(Anna
       Resource Anna | ResourceCapacity=0
       Assign Mark | AssignCount=1 | AssignType=Other | AssignOther=Capacity(Anna))"},
    {"resource/no-rows", "Process Work | ProcessAction=SDR", "Process \"Work\" seizes or releases, but lists no resource.",
     "Process Work | ProcessAction=D | ProcessMin=.1"},
    {"resource/rows-not-used", "Process Work | ProcessAction=D | Process_RCount=1",
     "Process \"Work\" only delays; its resources are not used.", "Process Work | " SERVE "Anna"},
    {"resource/deadlock", R"(
       Create Come
       Decide Ask
       Process First A | )" SEIZE R"(A
       Process Then B | )" SEIZE R"(B
       Process First B | )" SEIZE R"(B
       Process Then A | )" SEIZE R"(A
       Come -> Ask -true-> First A -> Then B
       Ask -false-> First B -> Then A)",
     "Who holds \"A\" waits for \"B\" at Process \"Then B\", and the other way round at Process \"Then A\".", R"(
       Create Come
       Decide Ask
       Process First A | )" SEIZE R"(A
       Process Then B | )" SEIZE R"(B
       Process Again A | )" SEIZE R"(A
       Process Again B | )" SEIZE R"(B
       Come -> Ask -true-> First A -> Then B
       Ask -false-> Again A -> Again B)"},
    {"resource/schedule-type", R"(
       Create Come | CreateType=Schedule | CreateScheduleName=Shift
       Schedule Shift)",
     "Create \"Come\" wants an Arrival schedule; \"Shift\" is a Capacity schedule.", R"(
       Create Come | CreateType=Schedule | CreateScheduleName=Shift
       Schedule Shift | ScheduleType=Arrival)"},
};

#define FOLLOWED "Resource Anna | ResourceType=Schedule | ResourceScheduleName=Shift\n"

constexpr RuleCase kSchedules[] = {
    {"schedule/empty", FOLLOWED "Schedule Shift", "Schedule \"Shift\" has no durations.", "Schedule Shift"},
    {"schedule/no-length",
     FOLLOWED "Schedule Shift | Schedule_DCount=2 | Schedule_DurationsValue=2;1 | Schedule_DurationsDuration=0;0",
     "Schedule \"Shift\": all durations are 0.",
     FOLLOWED "Schedule Shift | Schedule_DCount=2 | Schedule_DurationsValue=2;1 | Schedule_DurationsDuration=0;"},
    {"schedule/rows-after-endless",
     FOLLOWED "Schedule Shift | Schedule_DCount=2 | Schedule_DurationsValue=1;2 | Schedule_DurationsDuration=;8",
     "Schedule \"Shift\": the rows after the endless one never come.",
     FOLLOWED "Schedule Shift | Schedule_DCount=2 | Schedule_DurationsValue=1;2 | Schedule_DurationsDuration=8;"},
    {"schedule/negative",
     FOLLOWED "Schedule Shift | Schedule_DCount=1 | Schedule_DurationsValue=-1 | Schedule_DurationsDuration=8",
     "Schedule \"Shift\", row 1: -1 is negative.", R"(
       Process Work | ProcessMax=ScheduleValue(Shift)
       Schedule Shift | ScheduleType=Other | Schedule_DCount=1 | Schedule_DurationsValue=-1 | Schedule_DurationsDuration=8)"},
    {"schedule/rate-per-hour", R"(
       Create Come | CreateType=Schedule | CreateScheduleName=Shift
       Schedule Shift | ScheduleType=Arrival | ScheduleTimeUnits=Minutes)",
     "Schedule \"Shift\": the rates are per hour, the durations in minutes.", R"(
       Create Come | CreateType=Schedule | CreateScheduleName=Shift
       Schedule Shift | ScheduleType=Arrival | ScheduleTimeUnits=Hours)"},
};

constexpr RuleCase kFlow[] = {
    {"batch/never-split", R"(
       Create Come
       Batch Box | BatchType=Temporary
       Dispose Go
       Come -> Box -> Go)",
     "Batches from Batch \"Box\" can leave at Dispose \"Go\" unsplit.", R"(
       Create Come
       Batch Box | BatchType=Temporary
       Separate Open | SeparateType=Split
       Dispose Go
       Come -> Box -> Open -> Go)"},
    {"batch/nothing-to-split", R"(
       Create Come
       Batch Box
       Separate Open | SeparateType=Split
       Dispose Go
       Come -> Box -> Open -> Go)",
     "No temporary batch reaches Separate \"Open\".", R"(
       Create Come
       Batch Box | BatchType=Temporary
       Separate Open | SeparateType=Split
       Dispose Go
       Come -> Box -> Open -> Go)"},
    {"batch/starves", R"(
       Create Come | CreateMaxBatches=3 | CreateBatchSize=2
       Batch Box | BatchBatchSize=10
       Dispose Go
       Come -> Box -> Go)",
     "Batch \"Box\" waits for 10, but only 6 entities ever come.", R"(
       Create Come | CreateMaxBatches=5 | CreateBatchSize=2
       Batch Box | BatchBatchSize=10
       Dispose Go
       Come -> Box -> Go)"},
    {"record/counted-twice", R"(
       Create Come
       Record Note | RecordType=Entity
       Dispose Go
       Come -> Note -> Go)",
     "Entities recorded at Record \"Note\" are recorded again at Dispose \"Go\".", R"(
       Create Come
       Record Note | RecordType=Entity
       Dispose Go | EntityStatistics=No
       Come -> Note -> Go)"},
    {"record/set-index", R"(
       Record Note | RecordInSet=Yes | RecordCounterSetName=Counts | RecordSetIndex=4
       Set Counts | SetType=Counter | SetM_Count=3 | SetCounterMembers=A;B;C)",
     "Record \"Note\": set \"Counts\" has 3 members, not 4.", R"(
       Record Note | RecordInSet=Yes | RecordCounterSetName=Counts | RecordSetIndex=3
       Set Counts | SetType=Counter | SetM_Count=3 | SetCounterMembers=A;B;C)"},
    {"record/interval-from", "Record Note | RecordType=Interval", "Record \"Note\": \"Attribute 1\" is never set to a time.",
     "Record Note | RecordType=Interval | RecordAttributeName=Entity.CreateTime"},
};

constexpr RuleCase kLoad[] = {
    {"load/overloaded", R"(
       Create Come | CreateValue=20 | CreateUnits=Minutes
       Process Work | )" SERVE R"(Anna | ProcessDelayType=Constant | ProcessValue=25 | ProcessUnits=Minutes
       Dispose Go
       Resource Anna
       Come -> Work -> Go)",
     "\"Anna\" is asked for 1.25 times what it can do: its queues grow as long as the run.", R"(
       Create Come | CreateValue=20 | CreateUnits=Minutes
       Process Work | )" SERVE R"(Anna | ProcessDelayType=Constant | ProcessValue=25 | ProcessUnits=Minutes
       Dispose Go
       Resource Anna | ResourceCapacity=2
       Come -> Work -> Go)"},
    {"load/nearly-full", R"(
       Create Come | CreateValue=1
       Process Work | )" SERVE R"(Anna | ProcessDelayType=Expression | ProcessExpression=EXPO(.97)
       Dispose Go
       Resource Anna
       Come -> Work -> Go)",
     "\"Anna\" is busy at least 97 % of the time: it needs a long warm-up and long runs.", R"(
       Create Come | CreateValue=1
       Process Work | )" SERVE R"(Anna | ProcessDelayType=Expression | ProcessExpression=EXPO(.94)
       Dispose Go
       Resource Anna
       Come -> Work -> Go)"},
};

#define ENDLESS "Create Come\nDispose Go\nCome -> Go\n"

constexpr RuleCase kRun[] = {
    {"run/no-end", ENDLESS, "The model never ends by itself: add --length, for example --length 8h.",
     "Create Come | CreateMaxBatches=10\nDispose Go\nCome -> Go"},
    {"run/warm-up-too-long", ENDLESS "cell TheDoc User.VardoRunLength=\"8h\"\ncell TheDoc User.VardoRunWarmUp=\"480 min\"",
     "The warm-up is as long as the run.",
     ENDLESS "cell TheDoc User.VardoRunLength=\"8h\"\ncell TheDoc User.VardoRunWarmUp=\"479 min\""},
    {"run/setup", "cell TheDoc User.VardoRunLength=\"two days\"",
     "User.VardoRunLength: \"two days\" is not a time above 0, such as 8h, 30 d or 90 min.",
     "cell TheDoc User.VardoRunLength=\"2 days\""},
    {"run/one-replication", "cell TheDoc User.VardoRunReplications=\"1\"", "One replication gives no half-widths.",
     "cell TheDoc User.VardoRunReplications=\"2\""},
};

constexpr RuleCase kDamage[] = {
    {"damage/register", "Process Work\ncell ThePage Prop.Process=\"2\"",
     "Page \"Page-1\": the register of Process shapes is out of step; lists of names may miss Process \"Work\".", "Process Work"},
    {"damage/page-count", "Process Work\ncell ThePage Prop.Count=\"2\"", "Page \"Page-1\" counts 2 modules and has 1.",
     "Process Work"},
    {"damage/list-length", "Schedule Shift | Schedule_DCount=3 | Schedule_DurationsValue=1;2 | Schedule_DurationsDuration=1;1;1",
     "Schedule \"Shift\": 3 rows, but 2 values of Values; the rest is \"1\".",
     "Process Work | ProcessAction=SDR | Process_RCount=2 | Process_RType=Resource;Resource | Process_RResourceName=A;B | "
     "Process_RQuantity=1;1 | Process_RSetName=S"},
    {"damage/list-surplus", "Schedule Shift | Schedule_DCount=1 | Schedule_DurationsValue=1;2",
     "Schedule \"Shift\": values of Values beyond the 1 row are not used.", "Schedule Shift | Schedule_DCount=0"},
    {"damage/count-text", "Schedule Shift | Schedule_DCount=two", "Schedule \"Shift\": the number of rows reads \"two\".",
     "Schedule Shift | Schedule_DCount= 2"},
    {"damage/class-missing", "Process Work | ProcessMin=.1\nrow Work 242 0",
     "Process \"Work\" has no User.ClassName; its master says what it is.", "Process Work | ProcessMin=.1"},
    {"damage/separate-point", "Separate Copy | SeparateNumberofDuplicates=2\nrow Copy 7 2",
     "Separate \"Copy\" has lost its exit for duplicates: open its dialog and press OK.",
     "Separate Copy | SeparateType=Split\nrow Copy 7 2"},
    {"damage/capacity-copy", "Resource Anna | ResourceCapacity=2",
     "Resource \"Anna\": its copies of the capacity are out of step.",
     "Resource Anna | ResourceCapacity=2 | ResourceCapacityOrSchedule=2 | ResourceCapacityOrSchedule2=2"},
};

std::vector<Finding> FindingsOf(std::string_view rule, const char* drawing) {
  ModelDrawing model(drawing);
  const CheckFor purpose = rule.starts_with("run/") ? CheckFor::Run : CheckFor::Itself;
  std::vector<Finding> findings = Examine(model.document(), {}, {}, purpose).findings;
  std::erase_if(findings, [&](const Finding& finding) { return finding.rule != rule; });
  return findings;
}

std::vector<RuleCase> AllCases() {
  std::vector<RuleCase> cases;
  for (const std::span<const RuleCase> group : {std::span<const RuleCase>(kStructure),
                                                {kSubmodel},
                                                {kNames},
                                                {kFields},
                                                {kResources},
                                                {kSchedules},
                                                {kFlow},
                                                {kLoad},
                                                {kRun},
                                                {kDamage}})
    cases.insert(cases.end(), group.begin(), group.end());
  return cases;
}

std::vector<std::string> Messages(const std::vector<Finding>& findings) {
  std::vector<std::string> messages;
  for (const Finding& finding : findings) messages.push_back(finding.message);
  return messages;
}

class Rules : public testing::Test {
 private:
  TestPlatform platform_;
};

TEST_F(Rules, EachFindsTheDrawingThatBreaksIt) {
  std::map<std::string_view, Severity> severities;
  for (const RuleInfo& rule : AllRules()) severities[rule.id] = rule.severity;
  for (const RuleCase& of : AllCases()) {
    SCOPED_TRACE(of.rule);
    const std::vector<Finding> findings = FindingsOf(of.rule, of.broken);
    EXPECT_THAT(Messages(findings), testing::Contains(of.message));
    for (const Finding& finding : findings) EXPECT_EQ(finding.severity, severities.at(of.rule));
  }
}

TEST_F(Rules, NoneFindsTheDrawingThatNearlyBreaksIt) {
  for (const RuleCase& of : AllCases()) EXPECT_THAT(Messages(FindingsOf(of.rule, of.nearly)), testing::IsEmpty()) << of.rule;
}

TEST_F(Rules, EachHasItsDrawings) {
  std::set<std::string_view> tested, known;
  for (const RuleCase& of : AllCases()) tested.insert(of.rule);
  for (const RuleInfo& rule : AllRules()) EXPECT_TRUE(known.insert(rule.id).second) << rule.id << " is there twice";
  EXPECT_EQ(tested, known);
}

TEST_F(Rules, EachStandsInTheHelp) {
  std::ifstream file(VARDO_DOCS "/check-rules.md");
  const std::string help{std::istreambuf_iterator<char>(file), {}};
  for (const RuleInfo& rule : AllRules()) {
    const std::string line = "\n| `" + std::string(rule.id) + "` | " + std::string(WordFor(rule.severity)) + " | ";
    EXPECT_NE(help.find(line), std::string::npos) << rule.id;
  }
}

}  // namespace
}  // namespace vardo
