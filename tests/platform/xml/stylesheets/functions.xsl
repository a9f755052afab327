<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
    xmlns:exsl="http://exslt.org/common" xmlns:str="http://exslt.org/strings"
    xmlns:math="http://exslt.org/math" xmlns:set="http://exslt.org/sets"
    xmlns:date="http://exslt.org/dates-and-times" xmlns:func="http://exslt.org/functions"
    xmlns:dyn="http://exslt.org/dynamic" xmlns:my="urn:my"
    extension-element-prefixes="func" exclude-result-prefixes="exsl str math set date dyn my">
  <!-- XML out of the functions of EXSLT, one of them written here. -->
  <xsl:output method="xml" encoding="UTF-8" indent="yes" cdata-section-elements="raw"/>
  <func:function name="my:twice">
    <xsl:param name="text"/>
    <func:result select="concat($text, $text)"/>
  </func:function>
  <xsl:template match="/">
    <xsl:variable name="parts">
      <xsl:for-each select="//element[@vr = 'DS']">
        <xsl:for-each select="str:tokenize(., '\')">
          <part><xsl:value-of select="."/></part>
        </xsl:for-each>
      </xsl:for-each>
    </xsl:variable>
    <result max="{math:max(exsl:node-set($parts)/part)}" sum="{sum(exsl:node-set($parts)/part)}">
      <padded><xsl:value-of select="str:align('right', str:padding(20, '.-'), 'right')"/></padded>
      <year><xsl:value-of select="date:year('2024-02-29')"/></year>
      <later><xsl:value-of select="date:add('2024-02-28', 'P2D')"/></later>
      <types>
        <xsl:for-each select="set:distinct(//@vr)"><vr><xsl:value-of select="."/></vr></xsl:for-each>
      </types>
      <twice><xsl:value-of select="my:twice('ab')"/></twice>
      <dynamic><xsl:value-of select="dyn:evaluate('count(//element)')"/></dynamic>
      <raw><xsl:value-of select="//element[@vr = 'PN']"/></raw>
      <xsl:copy-of select="exsl:node-set($parts)/part[. &lt; 1]"/>
    </result>
  </xsl:template>
</xsl:stylesheet>
