#include "command/functions.h"

#include <gtest/gtest.h>

#include "language_fixture.h"

namespace orv::command::test {
namespace {

class FunctionsTest : public LanguageTest {};

TEST_F(FunctionsTest, CellReadsTheContextMatrixWithTheCellsType) {
  EXPECT_EQ(Text("cell(1,1)"), "alpha");
  EXPECT_EQ(Type("cell(1,1)"), type::kString);
  EXPECT_EQ(Text("cell(1,2)"), "5");
  EXPECT_EQ(Type("cell(1,2)"), type::kInteger);
  EXPECT_EQ(Type("cell(1,4)"), type::kReal);
  EXPECT_EQ(Type("cell(1,7)"), type::kDateTime);
  EXPECT_EQ(Type("cell(1,6)"), type::kLogic);
}

TEST_F(FunctionsTest, ACellWithoutATypeIsAString) {
  EXPECT_EQ(Text("cell(1,3)"), "x");
  EXPECT_EQ(Type("cell(1,3)"), type::kString);
  EXPECT_EQ(Text("cell(1,3)=\"x\""), "true");
  EXPECT_EQ(Text("\"x\"=cell(1,3)"), "true");
  EXPECT_EQ(Text("cell(2,3)+1"), "[Type mismatch]");
  EXPECT_EQ(Text("1+cell(2,3)"), "4");
}

TEST_F(FunctionsTest, CellTakesExpressions) {
  EXPECT_EQ(Text("cell(rec,fld)"), "3");
  EXPECT_EQ(Text("cell(rec-1,1)"), "alpha");
  EXPECT_EQ(Text("cell(cell(1,2)-4,(1))"), "alpha");
  EXPECT_EQ(Text("CELL( 1 , 1 )"), "alpha");
  EXPECT_EQ(Text("cell(1.4,1)"), "alpha");
  EXPECT_EQ(Text("cell(0,4)"), "name4");
}

TEST_F(FunctionsTest, CellsOfNumericTypesCompute) {
  EXPECT_EQ(Text("cell(1,2)+1"), "6");
  EXPECT_EQ(Text("cell(1,2)*cell(3,2)"), "60");
  EXPECT_EQ(Text("cell(2,2)<0"), "true");
  EXPECT_EQ(Text("cell(4,2)+1"), "1");
  EXPECT_EQ(Text("cell(1,4)*2"), "5");
}

TEST_F(FunctionsTest, CellRefusesWhatIsNoNumber) {
  EXPECT_EQ(Text("cell(\"a\",1)"), "[Invalid Record value]");
  EXPECT_EQ(Text("cell(1,\"a\")"), "[Invalid Field value]");
  EXPECT_EQ(Text("cell()"), "[Invalid Record value]");
  EXPECT_EQ(Text("cell(1)"), "[Invalid Field value]");
  EXPECT_EQ(Text("cell(true,1)"), "[Invalid Record value]");
  EXPECT_EQ(Text("cell(cell(1,5),1)"), "[Invalid Record value]");
  EXPECT_EQ(Text("cell(99999999999,1)"), "[Invalid Record value]");
  EXPECT_EQ(Text("cell(1,99999)"), "[Invalid Field value]");
  EXPECT_EQ(Type("cell(1)"), type::kError);
}

TEST_F(FunctionsTest, FailuresOfTheStorageAreRaised) {
  EXPECT_THROW(Text("cell(99,1)"), platform::RunTimeFailure);
  EXPECT_EQ(Text("1+1"), "2");
  EXPECT_EQ(Text("cell(-1,1)"), "<Error=20>");
  EXPECT_EQ(ErrorCode(), 20);
}

TEST_F(FunctionsTest, DotsReadFromTheOuterPathWhichIsTheContextPath) {
  EXPECT_EQ(Text(".cell(1,1)"), "alpha");
  EXPECT_EQ(Text("...cell(1,1)"), "alpha");
  EXPECT_EQ(Text(".str(5)"), "5");
}

TEST_F(FunctionsTest, APointBehindCellMakesAReference) {
  CellReference reference;
  context_.reference = &reference;
  services_.reads = 0;
  EXPECT_EQ(Type("cell(3,2)."), type::kCellReference);
  EXPECT_EQ(reference.record, 3);
  EXPECT_EQ(reference.field, 2);
  EXPECT_EQ(Text("cell(4,1).width"), "width");
  EXPECT_EQ(reference.record, 4);
  EXPECT_EQ(services_.reads, 0);
  EXPECT_EQ(Text("cell(4,1).+1"), "[Type mismatch]");
}

TEST_F(FunctionsTest, MatrixCellReadsAnyMatrix) {
  EXPECT_EQ(Text("matrix_cell(\"other.orv\"/[1,2],2,1,false)"), "two");
  EXPECT_EQ(Text("matrix_cell( \"other.orv\"/[1,2] ,2,2)+1"), "23");
  EXPECT_EQ(Type("matrix_cell(\"other.orv\"/[1,2],2,2)"), type::kInteger);
  EXPECT_EQ(Text("matrix_cell(\"table.orv\",rec,2)"), "-7");
}

TEST_F(FunctionsTest, MatrixCellEvaluatesTheFormulaOnlyOnExactlyTrue) {
  EXPECT_EQ(Text("matrix_cell(\"table.orv\",1,1,true)"), "formula of alpha");
  EXPECT_EQ(Text("matrix_cell(\"table.orv\",1,1,1=1)"), "formula of alpha");
  EXPECT_EQ(Text("matrix_cell(\"table.orv\",1,1,\"true\")"), "formula of alpha");
  EXPECT_EQ(Text("matrix_cell(\"table.orv\",1,1,True)"), "alpha");
  EXPECT_EQ(Text("matrix_cell(\"table.orv\",1,1,1)"), "alpha");
}

TEST_F(FunctionsTest, MatrixCellRefusesWhatIsNoNumber) {
  EXPECT_EQ(Text("matrix_cell(\"table.orv\",\"a\",1)"), "[Invalid Record value]");
  EXPECT_EQ(Text("matrix_cell(\"table.orv\",1,\"a\")"), "[Invalid Field value]");
  EXPECT_EQ(Text("matrix_cell(\"table.orv\")"), "[Invalid Record value]");
}

TEST_F(FunctionsTest, InstrFindsAText) {
  EXPECT_EQ(Text("instr(1,\"abc\",\"c\")"), "3");
  EXPECT_EQ(Text("instr(2,\"abcabc\",\"a\")"), "4");
  EXPECT_EQ(Text("instr(1,\"abc\",\"C\")"), "0");
  EXPECT_EQ(Text("instr(4,\"abc\",\"a\")"), "0");
  EXPECT_EQ(Text("instr(9,\"abc\",\"a\")"), "0");
  EXPECT_EQ(Text("instr(1,cell(2,1),\"ta\")"), "4");
  EXPECT_EQ(Text("instr(1,\"a,b\",\",\")"), "2");
  EXPECT_EQ(Type("instr(1,\"abc\",\"c\")"), type::kReal);
}

TEST_F(FunctionsTest, InstrAtItsLimits) {
  EXPECT_EQ(Text("instr(0,\"abc\",\"a\")"), "0");
  EXPECT_EQ(Text("instr(-1,\"abc\",\"\")"), "0");
  EXPECT_EQ(Text("instr(2,\"abc\",\"\")"), "2");
  EXPECT_EQ(Text("instr(1,\"\",\"\")"), "1");
  EXPECT_EQ(Text("instr(1,\"\",\"a\")"), "0");
}

TEST_F(FunctionsTest, InstrRefusesOtherTypes) {
  EXPECT_EQ(Text("instr(\"x\",\"abc\",\"c\")"), "[Invalid entering value]");
  EXPECT_EQ(Text("instr(1,5,\"c\")"), "[Invalid first value]");
  EXPECT_EQ(Text("instr(1,\"abc\",5)"), "[Invalid second value]");
  EXPECT_EQ(Text("instr(1)"), "[Invalid first value]");
  EXPECT_EQ(Type("instr(1)"), type::kError);
}

TEST_F(FunctionsTest, FieldFindsTheFirstRecord) {
  EXPECT_EQ(Text("field(1,\"alpha\")"), "1");
  EXPECT_EQ(Text("field(3,\"3\")"), "2");
  EXPECT_EQ(Text("field(1,\"Alpha\")"), "-1");
  EXPECT_EQ(Type("field(1,\"alpha\")"), type::kInteger);
  EXPECT_EQ(Text("field(\"a\",\"alpha\")"), "[Invalid field number]");
  EXPECT_EQ(Text("field(1,5)"), "[Invalid first value]");
}

TEST_F(FunctionsTest, RecPosFindsTheFirstRecordOfAnyMatrix) {
  EXPECT_EQ(Text("recpos(\"other.orv\"/[1,2],\"two\",1)"), "2");
  EXPECT_EQ(Text("recpos(\"other.orv\"/[1,2],22,2)"), "2");
  EXPECT_EQ(Text("recpos(\"other.orv\"/[1,2],11*2,1+1)"), "2");
  EXPECT_EQ(Text("recpos(\"other.orv\"/[1,2],\"three\",1)"), "-1");
  EXPECT_EQ(Type("recpos(\"other.orv\"/[1,2],\"two\",1)"), type::kInteger);
  EXPECT_EQ(Text("recpos(\"other.orv\"/[1,2],\"two\",\"a\")"), "[Invalid field number]");
}

TEST_F(FunctionsTest, RecPosWithoutAFieldDoesNothing) {
  EXPECT_EQ(Text("recpos(\"missing\",\"two\")"), "");
  EXPECT_EQ(Text("recpos(\"missing\",\"two\", )"), "");
}

TEST_F(FunctionsTest, StrTurnsNumbersIntoTexts) {
  EXPECT_EQ(Text("str(5)"), "5");
  EXPECT_EQ(Type("str(5)"), type::kString);
  EXPECT_EQ(Text("str(2+3)+\"a\""), "5a");
  EXPECT_EQ(Text("str(2.50)"), "2.50");
  EXPECT_EQ(Text("str(cell(1,2))+\"!\""), "5!");
  EXPECT_EQ(Text("str(\"a\")"), "[Type mismuch]");
  EXPECT_EQ(Text("str(cell(1,5))"), "[Type mismuch]");
  EXPECT_EQ(Text("str()"), "[Type mismuch]");
}

TEST_F(FunctionsTest, ValReadsTheNumberATextBeginsWith) {
  EXPECT_EQ(Text("val(\"12abc\")"), "12");
  EXPECT_EQ(Text("val(\" -2.50\")"), "-2.5");
  EXPECT_EQ(Text("val(\"abc\")"), "0");
  EXPECT_EQ(Text("val(\"\")"), "0");
  EXPECT_EQ(Text("val()"), "0");
  EXPECT_EQ(Text("val(\"3,5\")"), "3");
  EXPECT_EQ(Text("val(5)"), "5");
  EXPECT_EQ(Text("val(\"1E3\")"), "1000");
  EXPECT_EQ(Text("val(str(\"a\"))"), "0");
  EXPECT_EQ(Type("val(\"12\")"), type::kReal);
  EXPECT_EQ(Text("val(\"1E999\")"), "[Overflow]");
}

TEST_F(FunctionsTest, IfChoosesABranch) {
  EXPECT_EQ(Text("if(1=1,\"yes\",\"no\")"), "yes");
  EXPECT_EQ(Text("if(1=2,\"yes\",\"no\")"), "no");
  EXPECT_EQ(Text("if(true,1,2)"), "1");
  EXPECT_EQ(Text("if(True,1,2)"), "2");
  EXPECT_EQ(Text("if(\"true\",1,2)"), "1");
  EXPECT_EQ(Text("if(1,1,2)"), "2");
  EXPECT_EQ(Text("if(1=2,1)"), "");
}

TEST_F(FunctionsTest, IfTakesTheTypeOfTheBranch) {
  EXPECT_EQ(Type("if(1=1,5,\"a\")"), type::kInteger);
  EXPECT_EQ(Type("if(1=2,5,\"a\")"), type::kString);
  EXPECT_EQ(Text("if(1=1,5,6)+1"), "6");
  EXPECT_EQ(Text("if(1=1,5,6)+2*3"), "11");
  EXPECT_EQ(Text("if(1=1,1=1,2)=true"), "true");
  EXPECT_EQ(Text("if(if(1=1,1=1,2),\"x\",\"y\")"), "x");
}

TEST_F(FunctionsTest, IfEvaluatesOnlyTheChosenBranch) {
  EXPECT_EQ(Text("if(1=1,5,cell(99,1))"), "5");
  EXPECT_EQ(Text("if(1=1,5,1/0)"), "5");
  EXPECT_EQ(ErrorCode(), 0);
}

TEST_F(FunctionsTest, IfPassesErrorsOn) {
  EXPECT_EQ(Text("if(1=1,str(\"a\"),1)"), "[Type mismuch]");
  EXPECT_EQ(Type("if(1=1,str(\"a\"),1)"), type::kError);
  EXPECT_EQ(Text("if(1=1,str(\"a\"),1)+1"), "[Type mismatch]");
  EXPECT_EQ(Text("if(1<=2,1,2)"), "2");
}

TEST_F(FunctionsTest, UnknownFunctionsAreEmpty) {
  EXPECT_EQ(Text("foo(1,2)"), "");
  EXPECT_EQ(Type("foo(1,2)"), type::kVariant);
  EXPECT_EQ(Text("foo(1)+1"), "[Invalid command]");
  EXPECT_EQ(Text("1+foo(1)"), "1");
  EXPECT_EQ(Text("2(3)"), "");
  EXPECT_EQ(Type("2(3)"), type::kInteger);
  EXPECT_EQ(Text("foo(1)-2"), "[Invalid command]");
  EXPECT_EQ(Text("a_name_that_is_longer_than_any(1)"), "");
}

TEST_F(FunctionsTest, ArgumentsAreSplitOutsideTextsAndBrackets) {
  EXPECT_EQ(Text("instr((1),\"a,(b\",\"(b\")"), "3");
  EXPECT_EQ(Text("if(1=1,if(1=2,\"a,\",\"b)\"),\"c\")"), "b)");
  EXPECT_EQ(Text("instr(1,\"abc\",\"b\",4,5,6,7)"), "2");
}

}  // namespace
}  // namespace orv::command::test
