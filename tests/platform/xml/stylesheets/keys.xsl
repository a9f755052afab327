<?xml version="1.0"?>
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <!-- One line for each VR with its elements, found by key, in the order of their names. -->
  <xsl:output method="text" encoding="UTF-8"/>
  <xsl:strip-space elements="*"/>
  <xsl:key name="byVr" match="element" use="@vr"/>
  <xsl:template match="/">
    <xsl:for-each select="//element[generate-id() = generate-id(key('byVr', @vr)[1])]">
      <xsl:sort select="count(key('byVr', @vr))" data-type="number" order="descending"/>
      <xsl:sort select="@vr"/>
      <xsl:value-of select="concat(position(), '/', last(), ' ', @vr, ':')"/>
      <xsl:for-each select="key('byVr', @vr)">
        <xsl:sort select="@name" order="descending"/>
        <xsl:text> </xsl:text>
        <xsl:value-of select="@name"/>
        <xsl:if test="@vr != 'SQ'">
          <xsl:text>=</xsl:text>
          <xsl:value-of select="."/>
        </xsl:if>
      </xsl:for-each>
      <xsl:text>&#10;</xsl:text>
    </xsl:for-each>
    <xsl:number value="1994" format="I"/>
    <xsl:text> </xsl:text>
    <xsl:value-of select="format-number(sum(//element[@vr = 'US']), '#,##0.00')"/>
    <xsl:text>&#10;</xsl:text>
  </xsl:template>
</xsl:stylesheet>
