-- Quorvale: the tables the reports read, as they stand on the company's SQL Server.
-- Run with sqlcmd against an empty database (the database's default collation,
-- e.g. Chinese_PRC_CI_AS, applies), or through quorvale-admin create-db for an
-- embedded copy. One statement per batch.

-- Staff and posts

CREATE TABLE 员工档案 (
    工号 varchar(20) NOT NULL,
    姓名 nvarchar(30) NULL,
    性别 nvarchar(2) NULL,
    帐号密码 varchar(50) NULL,
    入职日期 datetime NULL,
    离职日期 datetime NULL,
    CONSTRAINT PK_员工档案 PRIMARY KEY (工号)
)
GO

CREATE TABLE 职能部门类别 (
    部门类别代号 varchar(20) NOT NULL,
    部门类别名称 nvarchar(50) NULL,
    CONSTRAINT PK_职能部门类别 PRIMARY KEY (部门类别代号)
)
GO

CREATE TABLE 职能部门new (
    职能部门编号 varchar(20) NOT NULL,
    职能部门名称 nvarchar(50) NULL,
    职能部门类别代号 varchar(20) NULL,
    CONSTRAINT PK_职能部门new PRIMARY KEY (职能部门编号)
)
GO

CREATE TABLE 岗位类别 (
    岗位类别编号 varchar(20) NOT NULL,
    岗位类别名称 nvarchar(50) NULL,
    CONSTRAINT PK_岗位类别 PRIMARY KEY (岗位类别编号)
)
GO

CREATE TABLE 岗位信息new (
    岗位代号 varchar(20) NOT NULL,
    岗位名称 nvarchar(50) NULL,
    职能部门代号 varchar(20) NULL,
    岗位类别代号 varchar(20) NULL,
    CONSTRAINT PK_岗位信息new PRIMARY KEY (岗位代号)
)
GO

CREATE INDEX IX_岗位信息new_职能部门代号 ON 岗位信息new (职能部门代号)
GO

CREATE TABLE 岗位员工new (
    员工代号 varchar(20) NOT NULL,
    岗位代号 varchar(20) NOT NULL,
    主要岗位 bit NULL DEFAULT 0,
    上岗日期 datetime NULL,
    离岗日期 datetime NULL,
    CONSTRAINT PK_岗位员工new PRIMARY KEY (员工代号, 岗位代号)
)
GO

CREATE INDEX IX_岗位员工new_岗位代号 ON 岗位员工new (岗位代号)
GO

-- Privileges

CREATE TABLE GroupPrivilege (
    GroupID varchar(20) NOT NULL,
    FormName varchar(50) NOT NULL,
    Popedom bit NULL DEFAULT 0,
    Memo nvarchar(50) NOT NULL,
    CONSTRAINT PK_GroupPrivilege PRIMARY KEY (GroupID, Memo, FormName)
)
GO

CREATE TABLE 岗位权限设置 (
    id int NOT NULL,
    组代号 varchar(20) NOT NULL,
    岗位代号 varchar(20) NOT NULL,
    授权 bit NOT NULL DEFAULT 0,
    CONSTRAINT PK_岗位权限设置 PRIMARY KEY (id)
)
GO

CREATE INDEX IX_岗位权限设置_岗位代号 ON 岗位权限设置 (岗位代号, 组代号)
GO

CREATE TABLE 专项审核权限表 (
    ID int NOT NULL,
    类型 nvarchar(20) NOT NULL,
    部门代号 varchar(20) NOT NULL,
    岗位代号 varchar(20) NOT NULL,
    CONSTRAINT PK_专项审核权限表 PRIMARY KEY (ID)
)
GO

CREATE INDEX IX_专项审核权限表_部门岗位 ON 专项审核权限表 (部门代号, 岗位代号, 类型)
GO

-- Management offices, buildings, rooms and owners

CREATE TABLE 设置管理处 (
    GYD_DH varchar(10) NOT NULL,
    GYD_Name nvarchar(50) NULL,
    商用物业 int NULL,
    对应部门代号 varchar(20) NULL,
    CONSTRAINT PK_设置管理处 PRIMARY KEY (GYD_DH)
)
GO

CREATE INDEX IX_设置管理处_对应部门代号 ON 设置管理处 (对应部门代号)
GO

CREATE TABLE 楼表 (
    L_ID int NOT NULL,
    管理处 varchar(10) NOT NULL,
    地址1 nvarchar(50) NULL,
    字1 nvarchar(10) NULL,
    地址2 nvarchar(50) NULL,
    字2 nvarchar(10) NULL,
    地址3 nvarchar(50) NULL,
    字3 nvarchar(10) NULL,
    地址4 nvarchar(50) NULL,
    字4 nvarchar(10) NULL,
    CONSTRAINT PK_楼表 PRIMARY KEY (L_ID)
)
GO

CREATE INDEX IX_楼表_管理处 ON 楼表 (管理处, L_ID)
GO

CREATE TABLE FWXZK (
    FWXZ_dh varchar(10) NOT NULL,
    FWXZ_xz nvarchar(50) NULL,
    CONSTRAINT PK_FWXZK PRIMARY KEY (FWXZ_dh)
)
GO

CREATE TABLE 室表 (
    S_ID int NOT NULL,
    L_ID int NOT NULL,
    室 nvarchar(20) NULL,
    建筑面积 decimal(18, 2) NULL,
    房屋性质 varchar(10) NULL,
    CONSTRAINT PK_室表 PRIMARY KEY (S_ID)
)
GO

CREATE INDEX IX_室表_L_ID ON 室表 (L_ID, S_ID)
GO

CREATE TABLE 业主表 (
    ZH_ID int NOT NULL,
    S_ID int NOT NULL,
    姓名 nvarchar(50) NULL,
    移动电话 varchar(20) NULL,
    进户日期 datetime NULL,
    开始收费日期 datetime NULL,
    说明 nvarchar(20) NULL,
    CONSTRAINT PK_业主表 PRIMARY KEY (ZH_ID)
)
GO

CREATE INDEX IX_业主表_S_ID ON 业主表 (S_ID, 说明)
GO

-- Parking

CREATE TABLE 车库名 (
    管理处 varchar(10) NOT NULL,
    车库编号 varchar(20) NOT NULL,
    车库名 nvarchar(50) NULL,
    CONSTRAINT PK_车库名 PRIMARY KEY (管理处, 车库编号)
)
GO

CREATE TABLE 车位说明表 (
    ID int NOT NULL,
    管理处 varchar(10) NOT NULL,
    车库编号 varchar(20) NOT NULL,
    车位编号 varchar(20) NOT NULL,
    产权类别 nvarchar(20) NULL,
    计费日期 datetime NULL,
    产权人 nvarchar(50) NULL,
    DJ_ID int NULL,
    CONSTRAINT PK_车位说明表 PRIMARY KEY (ID)
)
GO

CREATE INDEX IX_车位说明表_车位 ON 车位说明表 (管理处, 车库编号, 车位编号)
GO

CREATE TABLE 车位申请登记表 (
    登记ID int NOT NULL,
    管理处 varchar(10) NOT NULL,
    车库编号 varchar(20) NOT NULL,
    车位编号 varchar(20) NOT NULL,
    登记日期 datetime NULL,
    车主姓名 nvarchar(50) NULL,
    结账日期 datetime NULL,
    CONSTRAINT PK_车位申请登记表 PRIMARY KEY (登记ID)
)
GO

CREATE INDEX IX_车位申请登记表_车位 ON 车位申请登记表 (管理处, 车库编号, 车位编号)
GO

CREATE TABLE 车位产权 (
    ID int NOT NULL,
    车位ID int NOT NULL,
    CONSTRAINT PK_车位产权 PRIMARY KEY (ID)
)
GO

CREATE INDEX IX_车位产权_车位ID ON 车位产权 (车位ID)
GO

-- Fees and the receivable ledger

CREATE TABLE SetupSFXM (
    DH varchar(10) NOT NULL,
    XM nvarchar(50) NULL,
    收费类别 nvarchar(20) NULL,
    终止日期 datetime NULL,
    CONSTRAINT PK_SetupSFXM PRIMARY KEY (DH)
)
GO

CREATE INDEX IX_SetupSFXM_收费类别 ON SetupSFXM (收费类别, DH)
GO

CREATE TABLE WYZJ (
    ZJ_ID int NOT NULL,
    zh_ID int NULL,
    DJ_ID int NULL,
    cw_id int NULL,
    FWXZ_DH varchar(10) NULL,
    ZJ_CNY char(6) NOT NULL,
    ZJ_LX varchar(10) NOT NULL,
    ZJ_JE money NULL,
    ZJ_SKRQ datetime NULL,
    发票号码 varchar(30) NULL,
    收款方式 nvarchar(20) NULL,
    CONSTRAINT PK_WYZJ PRIMARY KEY (ZJ_ID)
)
GO

CREATE INDEX IX_WYZJ_zh_ID ON WYZJ (zh_ID, ZJ_CNY)
GO

CREATE INDEX IX_WYZJ_DJ_ID ON WYZJ (DJ_ID, ZJ_CNY)
GO

CREATE INDEX IX_WYZJ_cw_id ON WYZJ (cw_id, ZJ_CNY)
GO

CREATE INDEX IX_WYZJ_ZJ_LX ON WYZJ (ZJ_LX, ZJ_CNY)
GO
