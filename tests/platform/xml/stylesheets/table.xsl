<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <xsl:template name="row">
    <xsl:param name="depth" select="0"/>
    <tr class="d{$depth}">
      <td><xsl:value-of select="@tag"/></td>
      <td title="{@vr}">
        <xsl:value-of select="document('labels.xml', /)/labels/label[@vr = current()/@vr]"/>
      </td>
      <td><xsl:apply-templates select="text()[normalize-space()]"/></td>
    </tr>
    <xsl:for-each select="item/element">
      <xsl:call-template name="row">
        <xsl:with-param name="depth" select="$depth + 1"/>
      </xsl:call-template>
    </xsl:for-each>
  </xsl:template>
</xsl:stylesheet>
