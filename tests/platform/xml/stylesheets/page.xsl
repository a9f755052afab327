<!DOCTYPE xsl:stylesheet [<!ENTITY nbsp "&#160;">]>
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
  <!-- An HTML page: rows by an imported template that reads the labels with document(). -->
  <xsl:import href="table.xsl"/>
  <xsl:output method="html" encoding="UTF-8" indent="yes" doctype-system="about:legacy-compat"/>
  <xsl:variable name="width">
    <wide>1</wide>
  </xsl:variable>
  <xsl:template match="/header">
    <html>
      <head>
        <title><xsl:value-of select="@file"/>&nbsp;<xsl:value-of select="string($width)"/></title>
        <style>td &gt; b { color: red }</style>
        <script>if (1 &lt; 2) { }</script>
      </head>
      <body>
        <p><xsl:value-of select="count(document('')/*/*)"/></p>
        <xsl:for-each select="group">
          <table border="1" id="g{@number}">
            <xsl:for-each select="element"><xsl:call-template name="row"/></xsl:for-each>
          </table>
          <br/>
        </xsl:for-each>
      </body>
    </html>
  </xsl:template>
</xsl:stylesheet>
