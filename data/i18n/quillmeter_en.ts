<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name></name>
    <message id="刚刚"><source/><translation>just now</translation></message>
    <message id="秒"><source/><translation>s</translation></message>
    <message id="分钟"><source/><translation>min</translation></message>
    <message id="小时"><source/><translation>h</translation></message>
    <message id="天"><source/><translation>d</translation></message>
    <message id="%@前"><source/><translation>%@ ago</translation></message>
    <message id="%@后"><source/><translation>in %@</translation></message>
    <message id="正在采样"><source/><translation>Sampling</translation></message>
    <message id="剩余 %@"><source/><translation>%@ left</translation></message>
    <message id="充满还需 %@"><source/><translation>%@ to full</translation></message>
    <message id="充电中"><source/><translation>Charging</translation></message>
    <message id="已充满"><source/><translation>Charged</translation></message>
    <message id="使用电池"><source/><translation>On battery</translation></message>
    <message id="已接通电源"><source/><translation>Plugged in</translation></message>
    <message id="正常"><source/><translation>Normal</translation></message>
    <message id="温热"><source/><translation>Warm</translation></message>
    <message id="较热"><source/><translation>Hot</translation></message>
    <message id="过热"><source/><translation>Overheating</translation></message>
    <message id="未知"><source/><translation>Unknown</translation></message>
</context>
</TS>
